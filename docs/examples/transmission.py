#!/usr/bin/python3
# %% [markdown]
# # Windows, air, iron: what reaches the detector
#
# A notebook in the form of a script: `jupytext --to ipynb transmission.py`
# turns it into one, and `python3 transmission.py` draws the figure beside it.

# %%
import pathlib
import sys

import attenuate
import matplotlib
import numpy as np

matplotlib.use("agg")
import matplotlib.pyplot as plt  # noqa: E402

# %% [markdown]
# ## A stack over the energy
#
# A source behind a kapton window, 10 cm of air and an absorber of iron.

# %%
keV = np.geomspace(5, 150, 2000)
window = ("kapton", "50um")
air = ("air", "10cm")
iron = ("Fe", "25um")
stack = attenuate.stack(window, air, iron)

# %% [markdown]
# ## How thick should an iron absorber be?
#
# Metallic iron for the 14.41 keV line of 57Co, by the outermost line of its
# sextet, a quarter of the absorption: the best thickness weighs the depth of
# the line against the counts that are lost.

# %%
natural = attenuate.absorber("Fe", "57Fe", f=0.8, line=0.25)
mg_cm2 = np.linspace(0.5, 60, 400)
time = natural.relative_time(mg_cm2 * 1e-3)

# %% [markdown]
# ## Are these the published numbers?
#
# mu/rho of iron as published by NIST (Hubbell and Seltzer, NISTIR 5632).

# %%
published = np.array([
    (6, 84.84), (7.112, 407.6), (8, 305.6), (10, 170.6), (15, 57.08),
    (20, 25.68), (30, 8.176), (40, 3.629), (50, 1.958), (60, 1.205),
    (80, 0.5952), (100, 0.3717), (150, 0.1964)])
mu_rho = attenuate.material("Fe").mu_rho
assert np.allclose(mu_rho(published[:, 0]), published[:, 1], rtol=2e-3)

# %%
figure, (left, middle, right) = plt.subplots(
    1, 3, figsize=(11, 3.4), layout="constrained")
for layers, label in (((window,), "kapton 50 µm"), ((air,), "air 10 cm"),
                      ((iron,), "Fe 25 µm"), ((window, air, iron), "all")):
    left.plot(keV, attenuate.stack(*layers).transmission(keV), label=label,
              color="black" if label == "all" else None)
left.set(xscale="log", xlabel="energy / keV", ylabel="transmission",
         ylim=(0, 1.02), xlim=(5, 150))
left.set_xticks([5, 10, 20, 50, 100], ["5", "10", "20", "50", "100"])
left.minorticks_off()
left.legend()
left.set_title("A stack of layers")

middle.plot(mg_cm2, time)
middle.axvspan(natural.thinnest * 1e3, natural.thickest * 1e3, alpha=0.2)
middle.axvline(natural.best * 1e3, linestyle="--")
middle.annotate(f"{natural.best * 1e3:.1f} mg/cm²;\nin the band at\n"
                "most 10 % longer", (natural.best * 1e3, 2.5), xytext=(4, 0),
                textcoords="offset points", fontsize="small")
middle.set(xlabel="iron / mg cm⁻²", ylabel="counting time / shortest",
           ylim=(1, 3), xlim=(0, 60))
middle.set_title("Iron for 57Fe at 14.41 keV")

right.plot(keV, mu_rho(keV), label="interpolated")
right.plot(*published.T, "o", color="black", markersize=4, label="published")
right.set(xscale="log", yscale="log", xlabel="energy / keV", xlim=(5, 150),
          ylabel="µ/ρ / cm² g⁻¹")
right.set_xticks([5, 10, 20, 50, 100], ["5", "10", "20", "50", "100"])
right.tick_params(axis="x", which="minor", bottom=False, labelbottom=False)
right.legend()
right.set_title("Iron and its published table")

# %%
here = pathlib.Path(__file__).parent
figure.savefig(sys.argv[1] if len(sys.argv) > 1 else here / "transmission.png",
               dpi=100, metadata={"Software": None})
