! Attenuation and energy absorption of water over the energy, and how much of it
! half of the photons pass, in Fortran.
!
!   gfortran $(pkg-config --variable=includedir attenuate)/attenuate.f90 \
!     spectrum.f90 $(pkg-config --libs attenuate) && ./a.out
program spectrum
  use attenuate
  implicit none
  integer(c_size_t), parameter :: n = 4
  real(c_double) :: kev(n) = [10.0d0, 50.0d0, 100.0d0, 1000.0d0]
  real(c_double) :: mu_rho(n), mu_en_rho(n), density, g_cm2
  type(c_ptr) :: water, stack
  type(attenuate_error) :: error
  integer :: i

  call require(attenuate_material_new("water"//c_null_char, 0.0d0, water, error))
  call require(attenuate_mu_rho(water, kev, mu_rho, n, error))
  call require(attenuate_mu_en_rho(water, kev, mu_en_rho, n, error))
  do i = 1, int(n)
    print "(f8.1, 2f10.5)", kev(i), mu_rho(i), mu_en_rho(i)
  end do

  ! Without weights all lines are equal.
  call require(attenuate_density(water, density, error))
  call require(attenuate_stack_new([attenuate_layer(water, 0.0d0)], &
    1_c_size_t, stack, error))
  call require(attenuate_thickness(stack, 0_c_size_t, 0.5d0, kev, n=n, &
    weighting=attenuate_by_photons, g_cm2=g_cm2, error=error))
  print "(a, f6.2, a)", "half passes", g_cm2 / density, " cm"
  call attenuate_stack_free(stack)
  call attenuate_material_free(water)

contains

  subroutine require(status)
    integer(c_int), intent(in) :: status
    if (status == attenuate_ok) return
    print "(a)", text_of(error%message)
    stop 1
  end subroutine
end program
