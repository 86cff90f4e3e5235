/* libattenuate: attenuation of X-ray and gamma beams, 1 keV to 20 MeV, hydrogen
 * to uranium, for C, C++, Fortran and whoever else can call C.
 *
 * Energies are in keV, mass attenuation coefficients in cm2/g, linear ones in
 * 1/cm, areal masses in g/cm2, densities in g/cm3, lengths in cm. Narrow beam:
 * no build-up of scattered photons.
 *
 * Every function that can fail returns a status, and then writes to its `error`
 * what is wrong, if that is not NULL. Results are written only where the status
 * is ATTENUATE_OK, but for arrays of values (see below). Nothing is printed, no
 * signal is raised, no exception comes out.
 *
 * There is no global state. Materials and stacks do not change once they are
 * made, so that any number of threads may use one; only its end must wait until
 * all are done.
 *
 * Arrays of n energies give arrays of n values, which may be the same array.
 * Otherwise arrays must not overlap. Where an energy is outside the tables or
 * no number, its value is NaN, all the others are computed, the status is
 * ATTENUATE_OUTSIDE, and `error` has the subscript of the first. Nothing is
 * allocated while all energies are inside. n may be 0, but for a beam.
 *
 * Values of an array are the same bits on every machine, however long the array
 * is and however many threads there are. They differ by less than 1e-13,
 * relative, from those of the command, which computes one at a time. */

#ifndef ATTENUATE_H_
#define ATTENUATE_H_

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(ATTENUATE_BUILD) && defined(__GNUC__)
#define ATTENUATE_API __attribute__((visibility("default")))
#else
#define ATTENUATE_API
#endif

typedef int attenuate_status;
enum {
  ATTENUATE_OK = 0,
  ATTENUATE_ARGUMENT = 1, /* NULL, or a number that makes no sense */
  ATTENUATE_HANDLE = 2,   /* no material or stack, or one that was freed */
  ATTENUATE_INPUT = 3,    /* a text that cannot be read: column and hint tell */
  ATTENUATE_OUTSIDE = 4,  /* an energy outside the tables, or NaN */
  ATTENUATE_UNKNOWN = 5,  /* the answer does not exist: a density that nobody
                             knows, a molar mass of a mixture */
  ATTENUATE_SPACE = 6,    /* the caller's buffer is too short */
  ATTENUATE_MEMORY = 7,
  ATTENUATE_INTERNAL = 8 /* a fault of the library: please report it */
};

#define ATTENUATE_MESSAGE_SIZE 256

/* Owned by the caller, who need not initialise it. Texts are UTF-8, end in 0,
 * and are cut between characters where they are too long. */
typedef struct attenuate_error {
  attenuate_status status;
  int column;      /* in the text, in characters from 1; 0 for all of it */
  size_t position; /* subscript of the wrong energy, layer or line, from 0 */
  char message[ATTENUATE_MESSAGE_SIZE];
  char hint[ATTENUATE_MESSAGE_SIZE]; /* what to type instead, or blank */
} attenuate_error;

/* "1.0.0", and where the tables come from. */
ATTENUATE_API const char* attenuate_version(void);
ATTENUATE_API const char* attenuate_tables(void);

/* ---- Materials --------------------------------------------------------- */

typedef struct attenuate_material attenuate_material;

/* Reads a formula ("CuSO4*5H2O", "Fe2O3@5.24"), a name ("kapton") or a mixture
 * ("18% Cr // 8% Ni // Fe").
 *
 * density   g/cm3, instead of that of the text; 0 keeps the text's
 * material  receives a new one, or NULL if the status is not ATTENUATE_OK
 *
 * ATTENUATE_INPUT, ATTENUATE_ARGUMENT. */
ATTENUATE_API attenuate_status
attenuate_material_new(const char* text, double density,
                       attenuate_material** material, attenuate_error* error);

/* NULL and handles that were freed before are left alone, as far as that can be
 * told: the memory may have been given to another. */
ATTENUATE_API void attenuate_material_free(attenuate_material* material);

enum {
  ATTENUATE_TYPED = 0,          /* "Fe2O3@5.24" */
  ATTENUATE_READ = 1,           /* as understood: "CuSO4 + 5 H2O" */
  ATTENUATE_DENSITY_ORIGIN = 2, /* "typed", a handbook; blank if unknown */
  ATTENUATE_NOTES = 3           /* readings that could surprise, a line each */
};

/* Copies a text about the material, as a string that ends in 0.
 *
 * needed  if not NULL, receives the size that holds all of it, 0 included
 *
 * ATTENUATE_SPACE: `size` is less; what fits is copied. With a size of 0,
 * `buffer` may be NULL. */
ATTENUATE_API attenuate_status attenuate_material_text(
    const attenuate_material* material, int which, char* buffer, size_t size,
    size_t* needed, attenuate_error* error);

/* The areal mass of a thickness in words: "25um", "50mg/cm2", "30mg/d13mm" for
 * 30 mg pressed to a disc of 13 mm, "30mg/1.33cm2". Lengths need a density
 * (ATTENUATE_UNKNOWN). ATTENUATE_INPUT. */
ATTENUATE_API attenuate_status
attenuate_areal_mass(const attenuate_material* material, const char* thickness,
                     double* g_cm2, attenuate_error* error);

/* g/cm3, and g/mol. ATTENUATE_UNKNOWN. */
ATTENUATE_API attenuate_status
attenuate_density(const attenuate_material* material, double* density,
                  attenuate_error* error);
ATTENUATE_API attenuate_status
attenuate_molar_mass(const attenuate_material* material, double* molar_mass,
                     attenuate_error* error);

/* Elements in the order of the text, and their shares by mass, which add up to
 * 1.
 *
 * z, mass_fraction  receive `size` elements at most; either may be NULL
 * count             if not NULL, receives how many there are
 *
 * ATTENUATE_SPACE: `size` is less than `count`. With a size of 0 that is asked
 * for, and the status is ATTENUATE_OK. */
ATTENUATE_API attenuate_status attenuate_composition(
    const attenuate_material* material, int* z, double* mass_fraction,
    size_t size, size_t* count, attenuate_error* error);

/* mu/rho, with coherent scattering; mu_en/rho, by which energy is absorbed;
 * mu, which needs a density (ATTENUATE_UNKNOWN). */
ATTENUATE_API attenuate_status
attenuate_mu_rho(const attenuate_material* material, const double* keV,
                 double* cm2_g, size_t n, attenuate_error* error);
ATTENUATE_API attenuate_status
attenuate_mu_en_rho(const attenuate_material* material, const double* keV,
                    double* cm2_g, size_t n, attenuate_error* error);
ATTENUATE_API attenuate_status attenuate_mu(const attenuate_material* material,
                                            const double* keV, double* per_cm,
                                            size_t n, attenuate_error* error);

/* Relative uncertainty of mu/rho, k = 1. */
ATTENUATE_API attenuate_status
attenuate_uncertainty(const attenuate_material* material, const double* keV,
                      double* relative, size_t n, attenuate_error* error);

/* ---- Stacks of layers -------------------------------------------------- */

typedef struct attenuate_stack attenuate_stack;

typedef struct attenuate_layer {
  const attenuate_material* material;
  double g_cm2; /* areal mass, 0 or more: density times length */
} attenuate_layer;

/* Layers in the order of the beam; there may be none. The stack keeps no
 * pointer to them or to their materials. */
ATTENUATE_API attenuate_status
attenuate_stack_new(const attenuate_layer* layers, size_t n,
                    attenuate_stack** stack, attenuate_error* error);
ATTENUATE_API void attenuate_stack_free(attenuate_stack* stack);

/* The exponent: mu/rho times areal mass, summed over the layers; and the
 * transmission exp(-mu x). */
ATTENUATE_API attenuate_status attenuate_mu_x(const attenuate_stack* stack,
                                              const double* keV, double* mu_x,
                                              size_t n, attenuate_error* error);
ATTENUATE_API attenuate_status
attenuate_transmission(const attenuate_stack* stack, const double* keV,
                       double* transmission, size_t n, attenuate_error* error);

enum {
  ATTENUATE_BY_PHOTONS = 0, /* each line by its weight */
  ATTENUATE_BY_ENERGY = 1   /* each line by its weight times its energy */
};

/* Transmission of a beam of several lines, as one number.
 *
 * weight  of each line, relative to the others; NULL for equal ones */
ATTENUATE_API attenuate_status attenuate_beam_transmission(
    const attenuate_stack* stack, const double* keV, const double* weight,
    size_t n, int weighting, double* transmission, attenuate_error* error);

/* The areal mass that the layer with subscript `layer` must have (its own does
 * not count) for the whole to transmit `wanted` of the beam.
 *
 * ATTENUATE_UNKNOWN: no thickness does it, since the other layers alone
 * transmit less. */
ATTENUATE_API attenuate_status
attenuate_thickness(const attenuate_stack* stack, size_t layer, double wanted,
                    const double* keV, const double* weight, size_t n,
                    int weighting, double* g_cm2, attenuate_error* error);

/* ---- Elements ---------------------------------------------------------- */

/* Atomic number of a symbol or a name in small letters ("Fe", "iron"), 1 to 92.
 * ATTENUATE_INPUT. */
ATTENUATE_API attenuate_status attenuate_element(const char* name, int* z,
                                                 attenuate_error* error);

/* The symbol of an atomic number, NULL outside of 1 to 92. */
ATTENUATE_API const char* attenuate_symbol(int z);

typedef struct attenuate_edge {
  double keV;
  double jump;   /* mu above over mu below of this shell alone; 1 for none */
  char shell[4]; /* "K", "L1" .. "M5" */
} attenuate_edge;

/* Absorption edges, K first. `size` and `count` as above. */
ATTENUATE_API attenuate_status attenuate_edges(int z, attenuate_edge* edges,
                                               size_t size, size_t* count,
                                               attenuate_error* error);

/* Lines of a source ("57Co", "CuKa"), their energies rising, with photons per
 * 100 decays; of an anode, relative to 100 for K alpha 1. Either array may be
 * NULL; `size` and `count` as above. ATTENUATE_INPUT. */
ATTENUATE_API attenuate_status attenuate_source(const char* name, double* keV,
                                                double* intensity, size_t size,
                                                size_t* count,
                                                attenuate_error* error);

/* ---- Moessbauer absorbers ---------------------------------------------- */

typedef struct attenuate_absorber {
  double keV;              /* of the transition */
  double mu_rho;           /* cm2/g, by electrons */
  double isotope_fraction; /* of the element's atoms */
  double t_per_g_cm2;      /* effective thickness of the line, per g/cm2 */
  double background;       /* as given */
  /* Areal masses in g/cm2: the one that measures the line in the shortest time,
   * and between which that takes 10 % longer at most. */
  double best;
  double thinnest;
  double thickest;
} attenuate_absorber;

/* How thick an absorber measures a line in the shortest time.
 *
 * isotope      "57Fe"; "155Gd@105.3" where an isotope has several transitions
 * recoil_free  fraction f of the absorber, 1e-6 to 1
 * enriched     percent of the element's atoms that are the isotope, 1e-4 to
 *              100; 0 for what the formula says (^57Fe), or the natural
 *              abundance
 * line         share of the absorption that is in the line, 1e-6 to 1: 1 for a
 *              single line, 1/4 for the outermost of a sextet
 * background   counts in the window that are not the line, per count of the
 *              line, without absorber; 0 or more
 *
 * ATTENUATE_INPUT: an isotope that is not known, or not in the material. */
ATTENUATE_API attenuate_status attenuate_best_absorber(
    const attenuate_material* material, const char* isotope, double recoil_free,
    double enriched, double line, double background,
    attenuate_absorber* absorber, attenuate_error* error);

/* Counting times for a given relative error of the line's depth, relative to
 * that at the best areal mass; infinite at 0. */
ATTENUATE_API attenuate_status
attenuate_counting_time(const attenuate_absorber* absorber, const double* g_cm2,
                        double* relative, size_t n, attenuate_error* error);

#ifdef __cplusplus
}
#endif

#endif /* ATTENUATE_H_ */
