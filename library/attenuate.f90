! attenuate.h for Fortran 2003. Texts are passed as "Fe"//c_null_char, and
! text_of() turns what the library writes into a Fortran string.
module attenuate
  use, intrinsic :: iso_c_binding
  implicit none

  integer(c_int), parameter :: attenuate_ok = 0, attenuate_argument = 1, &
    attenuate_handle = 2, attenuate_input = 3, attenuate_outside = 4, &
    attenuate_unknown = 5, attenuate_space = 6, attenuate_memory = 7, &
    attenuate_internal = 8

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

    integer(c_int) function attenuate_areal_mass(material, thickness, g_cm2, &
        error) bind(c)
      import
      type(c_ptr), value :: material
      character(kind=c_char), intent(in) :: thickness(*)
      real(c_double), intent(out) :: g_cm2
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

    integer(c_int) function attenuate_transmission(stack, kev, transmission, &
        n, error) bind(c)
      import
      type(c_ptr), value :: stack
      real(c_double), intent(in) :: kev(*)
      real(c_double), intent(inout) :: transmission(*)
      integer(c_size_t), value :: n
      type(attenuate_error), intent(out) :: error
    end function

    integer(c_int) function attenuate_thickness(stack, layer, wanted, kev, &
        weight, n, weighting, g_cm2, error) bind(c)
      import
      type(c_ptr), value :: stack
      integer(c_size_t), value :: layer
      real(c_double), value :: wanted
      real(c_double), intent(in) :: kev(*), weight(*)
      integer(c_size_t), value :: n
      integer(c_int), value :: weighting
      real(c_double), intent(out) :: g_cm2
      type(attenuate_error), intent(out) :: error
    end function
  end interface

contains

  function text_of(characters) result(text)
    character(kind=c_char), intent(in) :: characters(:)
    character(len=:), allocatable :: text
    integer :: i
    text = ""
    do i = 1, size(characters)
      if (characters(i) == c_null_char) exit
      text = text // characters(i)
    end do
  end function
end module
