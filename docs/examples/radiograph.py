#!/usr/bin/python3
"""A radiograph in a spectrum, on as many machines as Dask has workers.

The maps say how much copper and polyethylene (g/cm2) lies in front of each
pixel; the answer is the transmission of the spectrum in each pixel. Every chunk
of the maps is a task of its own, so that no process holds more than a few
chunks, and a chunk whose worker ends is computed by another one.

    radiograph.py --pixels 2000 --energies 200 --workers 2

On more machines: start `dask scheduler` on one and `dask worker ADDRESS` on all
of them, and give `--scheduler ADDRESS`. The maps then come from files that all
of them see, instead of synthetic().
"""

import argparse
import logging
import os
import resource
import signal
import sys
import threading
import time

import attenuate
import dask
import dask.array as da
import numpy as np

MATERIALS = ("Cu", "polyethylene")


def spectrum(n):
    """n energies from 20 to 150 keV, with the weights of a tungsten tube."""
    keV = np.linspace(20.0, 150.0, n)
    photons = (150.5 - keV) * attenuate.material("W").transmission(
        0.005, keV) * attenuate.material("Al").transmission("3mm", keV)
    return keV, photons / photons.sum()


def synthetic(block_info=None):
    """A chunk of both maps: a copper wedge, a block with round holes."""
    (_, y0_y1, x0_x1) = block_info[None]["array-location"]
    size = block_info[None]["shape"][1]
    y, x = np.ogrid[slice(*y0_y1), slice(*x0_x1)]
    wedge = 0.5 * x / size + 0.0 * y
    holes = (np.hypot(x % 100 - 50, y % 100 - 50) > 30) * 2.0
    return np.stack([wedge, holes])


def transmitted(maps, mu_rho, share):
    """The transmission of the spectrum behind one chunk of the maps.

    Energy by energy on some rows at a time, which stay in the cache.
    """
    passed = np.zeros(maps.shape[1:])
    rows = max(1, 30000 // maps.shape[2])
    for start in range(0, maps.shape[1], rows):
        part = np.s_[start:start + rows]
        x = np.empty_like(passed[part])
        other = np.empty_like(x)
        for (first, second), weight in zip(mu_rho.T, share):
            np.multiply(maps[0][part], -first, out=x)
            np.multiply(maps[1][part], second, out=other)
            np.subtract(x, other, out=x)
            np.exp(x, out=x)
            np.multiply(x, weight, out=x)
            passed[part] += x
    return passed


def radiograph(pixels, energies, chunk):
    """The radiograph as a Dask array: nothing is computed yet."""
    keV, share = spectrum(energies)
    mu_rho = np.stack([attenuate.material(m).mu_rho(keV) for m in MATERIALS])
    pieces = da.core.normalize_chunks((chunk, chunk), (pixels, pixels))
    maps = da.map_blocks(synthetic, chunks=((2,), *pieces), dtype=float,
                         meta=np.empty((0, 0, 0)))
    return da.map_blocks(transmitted, maps, mu_rho, share, drop_axis=0,
                         dtype=float, meta=np.empty((0, 0)))


class File:
    """An .npy file that workers write their chunks to.

    Each opens it for itself: an array would be sent to them as a copy. A chunk
    that is computed once more is written once more, with the same bytes.
    """

    def __init__(self, path, image):
        self.path = os.path.abspath(path)
        self.shape, self.dtype = image.shape, image.dtype
        new = np.lib.format.open_memmap(self.path, mode="w+", shape=self.shape,
                                        dtype=self.dtype)
        new[...] = np.nan

    def __setitem__(self, region, values):
        np.lib.format.open_memmap(self.path, mode="r+")[region] = values


def end_a_worker(client, done):
    """Kills a worker as soon as a few chunks are there."""
    while not done.wait(0.01):
        with_results = [pid for pid, held in
                        client.run(lambda dask_worker: (
                            os.getpid(), dask_worker.state.executed_count)
                                   ).values() if held > 2]
        if with_results:
            print("worker", with_results[0], "is killed")
            os.kill(with_results[0], signal.SIGKILL)
            return


def peak_memory():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024


def compute(image, arguments, result):
    """Computes the image into `result`, chunk by chunk."""
    from dask.distributed import Client, LocalCluster
    if arguments.scheduler:
        client, cluster = Client(arguments.scheduler), None
    else:
        cluster = LocalCluster(n_workers=arguments.workers,
                               threads_per_worker=1, dashboard_address=None,
                               silence_logs=logging.CRITICAL)
        client = Client(cluster)
    with client:
        done = threading.Event()
        if arguments.end_a_worker:
            killer = threading.Thread(target=end_a_worker, args=(client, done))
            killer.start()
        start = time.perf_counter()
        da.store(image, result, lock=False)
        seconds = time.perf_counter() - start
        done.set()
        memory = max(client.run(peak_memory).values())
    if cluster is not None:
        cluster.close()
    return seconds, memory


def count(text):
    """A number from 1 on, for argparse; no worker would wait for ever."""
    number = int(text)
    if number < 1:
        raise ValueError
    return number


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--pixels", type=count, default=2000, help="a side")
    parser.add_argument("--energies", type=count, default=200)
    parser.add_argument("--chunk", type=count, default=250, help="pixels a side")
    parser.add_argument("--workers", type=count, default=2)
    parser.add_argument("--scheduler", help="address of a running cluster")
    parser.add_argument("--end-a-worker", action="store_true",
                        help="kill one on the way")
    parser.add_argument("--output", default="radiograph.npy")
    parser.add_argument("--compare", action="store_true",
                        help="with the same in one process")
    arguments = parser.parse_args()

    image = radiograph(arguments.pixels, arguments.energies, arguments.chunk)
    seconds, memory = compute(image, arguments, File(arguments.output, image))
    print(f"{seconds:.2f} s with workers of {memory:.0f} MB at most")
    if arguments.compare:
        start = time.perf_counter()
        alone = image.compute(scheduler="synchronous")
        print(f"{time.perf_counter() - start:.2f} s in one process")
        if not np.array_equal(np.load(arguments.output), alone):
            sys.exit("the results differ")
        print("every pixel is the same")


if __name__ == "__main__":
    dask.config.set({"distributed.comm.retry.count": 3})
    main()
