#!/usr/bin/python3
"""Arrays of energies, side by side with xraylib's NumPy interface.

    ATTENUATE_LIBRARY=build/release/library/libattenuate.so.1 \
      PYTHONPATH=library/python bench/arrays.py

Needs python3-xraylib. Processor time counts, the best of several runs each, so
that other work on the machine disturbs little; of threads the clock on the
wall counts, and they need the machine to themselves.
"""

import threading
import time
import warnings

import numpy as np

import attenuate

warnings.simplefilter("ignore")
import xraylib  # noqa: E402
import xraylib_np  # noqa: E402

N = 1_000_000
KEV = np.exp(np.random.default_rng(1).uniform(np.log(5), np.log(150), N))


def best(action, runs, clock=time.thread_time):
    times = []
    for _ in range(runs):
        start = clock()
        action()
        times.append(clock() - start)
    return min(times)


def compare(name, material, aim):
    """Both ways to mu/rho of a material, from its mass fractions."""
    fractions = material.mass_fractions
    z = np.array([xraylib.SymbolToAtomicNumber(s) for s in fractions])
    share = np.array(list(fractions.values()))
    other = best(lambda: share @ xraylib_np.CS_Total(z, KEV), 3)
    ours = best(lambda: material.mu_rho(KEV), 15)
    print(f"{name:26}{1e9 * other / N / len(z):8.1f}"
          f"{1e9 * ours / N / len(z):8.2f}{other / ours:8.0f} (aim {aim})")


def threads():
    """How much faster two threads do twice the work than one does."""
    steel = attenuate.material("18% Cr // 8% Ni // 2% Mo // 1% Mn // Fe")
    values = [KEV.copy() for _ in range(2)]

    def work(keV):
        for _ in range(10):
            steel.mu_rho(keV)

    def together():
        both = [threading.Thread(target=work, args=(v,)) for v in values]
        for thread in both:
            thread.start()
        for thread in both:
            thread.join()

    one = best(lambda: work(values[0]), 5, time.perf_counter)
    two = best(together, 5, time.perf_counter)
    print(f"two threads: {2 * one / two:.2f} times as fast as one (aim 1.8)")


if __name__ == "__main__":
    print(f"{N} energies at random, 5 to 150 keV; ns per coefficient")
    print(f"{'':26}{'xraylib':>8}{'here':>8}{'times':>8}")
    compare("Fe", attenuate.material("Fe"), 8)
    compare("Na2[Fe(CN)5NO] (5)", attenuate.material("Na2[Fe(CN)5NO]"), 20)
    threads()
