! attenuate.h for Fortran 2018: arrays that may be NULL are optional. Texts are
! passed as "Fe"//c_null_char, and text_of() turns what the library writes, or
! points to, into a Fortran string. Subscripts count from 0.
module attenuate
  use, intrinsic :: iso_c_binding
  implicit none

  integer(c_int), parameter :: attenuate_ok = 0, attenuate_argument = 1, &
    attenuate_handle = 2, attenuate_input = 3, attenuate_outside = 4, &
    attenuate_unknown = 5, attenuate_space = 6, attenuate_memory = 7, &
    attenuate_internal = 8
  integer(c_int), parameter :: attenuate_typed = 0, attenuate_read = 1, &
    attenuate_density_origin = 2, attenuate_notes = 3
  integer(c_int), parameter :: attenuate_by_photons = 0, &
    attenuate_by_energy = 1

  type, bind(c) :: attenuate_error
    integer(c_int) :: status
    integer(c_int) :: column
    integer(c_size_t) :: position
    character(kind=c_char) :: message(256)
    character(kind=c_char) :: hint(256)
  end type

  type, bind(c) :: attenuate_layer
    type(c_ptr) :: material
    real(c_double) :: g_cm2
  end type

  type, bind(c) :: attenuate_edge
    real(c_double) :: kev, jump
    character(kind=c_char) :: shell(4)
  end type

  type, bind(c) :: attenuate_absorber
    real(c_double) :: kev, mu_rho, isotope_fraction, t_per_g_cm2, background, &
      best, thinnest, thickest
  end type

  interface
    integer(c_int) function attenuate_material_new(text, density, material, &
        error) bind(c)
      import
      character(kind=c_char), intent(in) :: text(*)
      real(c_double), value :: density
      type(c_ptr), intent(out) :: material
      type(attenuate_error), intent(out) :: error
    end function

    subroutine attenuate_material_free(material) bind(c)
      import
      type(c_ptr), value :: material
    end subroutine

    integer(c_int) function attenuate_material_text(material, which, buffer, &
        size, needed, error) bind(c)
      import
      type(c_ptr), value :: material
      integer(c_int), value :: which
      character(kind=c_char), intent(inout) :: buffer(*)
      integer(c_size_t), value :: size
      integer(c_size_t), intent(out) :: needed
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_areal_mass(material, thickness, g_cm2, &
        error) bind(c)
      import
      type(c_ptr), value :: material
      character(kind=c_char), intent(in) :: thickness(*)
      real(c_double), intent(out) :: g_cm2
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_density(material, density, error) bind(c)
      import
      type(c_ptr), value :: material
      real(c_double), intent(out) :: density
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_molar_mass(material, molar_mass, &
        error) bind(c)
      import
      type(c_ptr), value :: material
      real(c_double), intent(out) :: molar_mass
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_composition(material, z, mass_fraction, &
        size, count, error) bind(c)
      import
      type(c_ptr), value :: material
      integer(c_int), intent(inout), optional :: z(*)
      real(c_double), intent(inout), optional :: mass_fraction(*)
      integer(c_size_t), value :: size
      integer(c_size_t), intent(out) :: count
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_mu_rho(material, kev, cm2_g, n, error) &
        bind(c)
      import
      type(c_ptr), value :: material
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: cm2_g(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_mu_en_rho(material, kev, cm2_g, n, &
        error) bind(c)
      import
      type(c_ptr), value :: material
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: cm2_g(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_mu(material, kev, per_cm, n, &
        error) bind(c)
      import
      type(c_ptr), value :: material
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: per_cm(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_uncertainty(material, kev, relative, n, &
        error) bind(c)
      import
      type(c_ptr), value :: material
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: relative(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_stack_new(layers, n, stack, error) bind(c)
      import
      type(attenuate_layer), intent(in) :: layers(*)
      integer(c_size_t), value :: n
      type(c_ptr), intent(out) :: stack
      type(attenuate_error), intent(out) :: error
    end function

    subroutine attenuate_stack_free(stack) bind(c)
      import
      type(c_ptr), value :: stack
    end subroutine

    integer(c_int) function attenuate_mu_x(stack, kev, mu_x, n, error) bind(c)
      import
      type(c_ptr), value :: stack
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: mu_x(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_transmission(stack, kev, transmission, &
        n, error) bind(c)
      import
      type(c_ptr), value :: stack
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: transmission(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_beam_transmission(stack, kev, weight, n, &
        weighting, transmission, error) bind(c)
      import
      type(c_ptr), value :: stack
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(in), optional :: weight(*)
      integer(c_size_t), value :: n
      integer(c_int), value :: weighting
      real(c_double), intent(out) :: transmission
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_thickness(stack, layer, wanted, kev, &
        weight, n, weighting, g_cm2, error) bind(c)
      import
      type(c_ptr), value :: stack
      integer(c_size_t), value :: layer
      real(c_double), value :: wanted
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(in), optional :: weight(*)
      integer(c_size_t), value :: n
      integer(c_int), value :: weighting
      real(c_double), intent(out) :: g_cm2
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_element(name, z, error) bind(c)
      import
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int), intent(out) :: z
      type(attenuate_error), intent(out) :: error
    end function

    type(c_ptr) function attenuate_symbol(z) bind(c)
      import
      integer(c_int), value :: z
    end function

    integer(c_int) function attenuate_edges(z, edges, size, count, &
        error) bind(c)
      import
      integer(c_int), value :: z
      type(attenuate_edge), intent(inout), optional :: edges(*)
      integer(c_size_t), value :: size
      integer(c_size_t), intent(out) :: count
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_source(name, kev, intensity, size, &
        count, error) bind(c)
      import
      character(kind=c_char), intent(in) :: name(*)
      real(c_double), intent(inout), optional :: kev(*), intensity(*)
      integer(c_size_t), value :: size
      integer(c_size_t), intent(out) :: count
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_best_absorber(material, isotope, &
        recoil_free, enriched, line, background, absorber, error) bind(c)
      import
      type(c_ptr), value :: material
      character(kind=c_char), intent(in) :: isotope(*)
      real(c_double), value :: recoil_free, enriched, line, background
      type(attenuate_absorber), intent(out) :: absorber
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_counting_time(absorber, g_cm2, relative, &
        n, error) bind(c)
      import
      type(attenuate_absorber), intent(in) :: absorber
      real(c_double), intent(in) :: g_cm2(*)
      real(c_double), intent(inout) :: relative(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    type(c_ptr) function attenuate_version() bind(c)
      import
    end function

    type(c_ptr) function attenuate_tables() bind(c)
      import
    end function
  end interface

  interface text_of
    module procedure text_of_characters, text_of_pointer
  end interface
  private text_of_characters, text_of_pointer

contains

  function text_of_characters(characters) result(text)
    character(kind=c_char), intent(in) :: characters(:)
    character(len=:), allocatable :: text
    integer :: i
    text = ""
    do i = 1, size(characters)
      if (characters(i) == c_null_char) exit
      text = text // characters(i)
    end do
  end function

  function text_of_pointer(pointer) result(text)
    type(c_ptr), intent(in) :: pointer
    character(len=:), allocatable :: text
    character(kind=c_char), pointer :: characters(:)
    interface
      integer(c_size_t) function strlen(string) bind(c)
        import
        type(c_ptr), value :: string
      end function
    end interface
    text = ""
    if (.not. c_associated(pointer)) return
    call c_f_pointer(pointer, characters, [strlen(pointer)])
    text = text_of_characters(characters)
  end function
end module
