! Attenuation and energy absorption of water over the energy, in Fortran.
!
!   gfortran $(pkg-config --variable=includedir attenuate)/attenuate.f90 \
!     spectrum.f90 $(pkg-config --libs attenuate) && ./a.out
program spectrum
  use attenuate
  implicit none
  integer(c_size_t), parameter :: n = 4
  real(c_double) :: kev(n) = [10.0d0, 50.0d0, 100.0d0, 1000.0d0]
  real(c_double) :: mu_rho(n), mu_en_rho(n)
  type(c_ptr) :: water
  type(attenuate_error) :: error
  integer :: i

  call require(attenuate_material_new("water"//c_null_char, 0.0d0, water, error))
  call require(attenuate_mu_rho(water, kev, mu_rho, n, error))
  call require(attenuate_mu_en_rho(water, kev, mu_en_rho, n, error))
  do i = 1, int(n)
    print "(f8.1, 2f10.5)", kev(i), mu_rho(i), mu_en_rho(i)
  end do
  call attenuate_material_free(water)

contains

  subroutine require(status)
    integer(c_int), intent(in) :: status
    if (status == attenuate_ok) return
    print "(a)", text_of(error%message)
    stop 1
  end subroutine
end program
