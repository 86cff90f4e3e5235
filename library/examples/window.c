/* What a beam window and an iron foil let through, in C.
 *
 *   cc window.c $(pkg-config --cflags --libs attenuate) && ./a.out */

#include <attenuate.h>
#include <stdio.h>
#include <stdlib.h>

static void end_with(const attenuate_error* error, const char* text) {
  fprintf(stderr, "%s\n", error->message);
  if (error->column > 0) {
    fprintf(stderr, "%s\n%*s\n", text, error->column, "^");
  }
  if (error->hint[0] != '\0') fprintf(stderr, "hint: %s\n", error->hint);
  exit(1);
}

/* The caller frees the material. */
static attenuate_layer layer(const char* text, const char* thickness,
                             attenuate_material** material) {
  attenuate_error error;
  attenuate_layer result = {NULL, 0.0};
  if (attenuate_material_new(text, 0.0, material, &error) != ATTENUATE_OK) {
    end_with(&error, text);
  }
  if (attenuate_areal_mass(*material, thickness, &result.g_cm2, &error) !=
      ATTENUATE_OK) {
    end_with(&error, thickness);
  }
  result.material = *material;
  return result;
}

int main(int argc, char** argv) {
  const double keV[] = {6.404, 14.4129, 122.0607, 136.4736};
  double transmission[4];
  attenuate_error error;
  attenuate_material *window = NULL, *sample = NULL;
  attenuate_stack* stack = NULL;
  attenuate_layer layers[2];
  int i;

  layers[0] = layer("kapton", "50um", &window);
  layers[1] = layer(argc > 1 ? argv[1] : "Fe", "25um", &sample);
  if (attenuate_stack_new(layers, 2, &stack, &error) != ATTENUATE_OK ||
      attenuate_transmission(stack, keV, transmission, 4, &error) !=
          ATTENUATE_OK) {
    end_with(&error, "");
  }
  for (i = 0; i < 4; ++i) printf("%8.4f keV  %.4f\n", keV[i], transmission[i]);

  attenuate_stack_free(stack);
  attenuate_material_free(window);
  attenuate_material_free(sample);
  return 0;
}
