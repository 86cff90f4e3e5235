# Notes for uninstall.cmake, one path a line, which files were installed and
# which directories (with a "/" at the end) were made for them.
# Building a package installs too, into a place of its own: that is not noted.

string(FIND "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}" "/_CPack_Packages/" found)
if(found EQUAL -1)
  set(IN_PACKAGE OFF)
else()
  set(IN_PACKAGE ON)
endif()

# Makes those of the given folders (absolute or below the prefix) that are not
# there yet, and what is missing above them, and notes them. Everybody may read
# them, also where the installing user's files are private.
function(make_directories record)
  set(missing)
  if(IN_PACKAGE)
    list(APPEND missing "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/")
  endif()
  foreach(folder IN LISTS ARGN)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}")
    set(folder "$ENV{DESTDIR}${folder}")
    while(NOT EXISTS "${folder}")
      list(APPEND missing "${folder}/")
      cmake_path(GET folder PARENT_PATH folder)
    endwhile()
  endforeach()
  if(missing)
    file(MAKE_DIRECTORY ${missing})
    file(CHMOD ${missing} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
      GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
  write_record("${record}" "${missing}")
endfunction()

function(note_files record)
  list(TRANSFORM CMAKE_INSTALL_MANIFEST_FILES PREPEND "$ENV{DESTDIR}"
    OUTPUT_VARIABLE files)
  write_record("${record}" "${files}")
endfunction()

# Adds `paths` to those of earlier installations.
function(write_record record paths)
  if(IN_PACKAGE)
    return()
  endif()
  if(EXISTS "${record}")
    file(STRINGS "${record}" earlier)
    list(APPEND paths ${earlier})
  endif()
  list(REMOVE_DUPLICATES paths)
  list(SORT paths)
  list(JOIN paths "\n" text)
  file(WRITE "${record}" "${text}\n")
endfunction()
