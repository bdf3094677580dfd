"""The peer of bench/thumb_time: Pillow opens the BMP of the same picture and
makes its thumbnail (256 px), timed the same way (fastest and median of RUNS,
milliseconds); then the SSIM of our thumbnail (ours.ppm) against Pillow's
LANCZOS result of the same picture, computed here with numpy.
Usage: python3 thumb_bench.py FOLDER RUNS [OTHER.ppm ...]
Prints: PILLOW_BEST_MS PILLOW_MEDIAN_MS SSIM, then "NAME SSIM" for each
other thumbnail named (the scaler candidates of bench/scaler_compare)."""
import sys
import time

import numpy as np
from PIL import Image


def gaussian_window(size=11, sigma=1.5):
    x = np.arange(size) - size // 2
    w = np.exp(-(x * x) / (2 * sigma * sigma))
    return w / w.sum()


def blur(a, w):
    # Separable filtering, "valid" part only, as the reference SSIM does.
    a = np.apply_along_axis(lambda r: np.convolve(r, w, mode="valid"), 1, a)
    return np.apply_along_axis(lambda c: np.convolve(c, w, mode="valid"), 0, a)


def ssim_channel(x, y):
    # Wang et al. (2004): 11-tap Gaussian window, sigma 1.5, K1 0.01, K2 0.03.
    c1, c2 = (0.01 * 255) ** 2, (0.03 * 255) ** 2
    w = gaussian_window()
    mx, my = blur(x, w), blur(y, w)
    sxx = blur(x * x, w) - mx * mx
    syy = blur(y * y, w) - my * my
    sxy = blur(x * y, w) - mx * my
    s = ((2 * mx * my + c1) * (2 * sxy + c2)) / ((mx * mx + my * my + c1) * (sxx + syy + c2))
    return float(s.mean())


def ssim(a, b):
    a = np.asarray(a, dtype=np.float64)
    b = np.asarray(b, dtype=np.float64)
    return sum(ssim_channel(a[:, :, c], b[:, :, c]) for c in range(3)) / 3


def reference_of(bmp):
    with Image.open(bmp) as im:
        im = im.convert("RGB")
        scale = min(256 / im.size[0], 256 / im.size[1])
        target = (round(im.size[0] * scale), round(im.size[1] * scale))
        return im.resize(target, Image.LANCZOS)


def ssim_of(path, reference):
    with Image.open(path) as other:
        other = other.convert("RGB")
        if other.size != reference.size:
            return float("nan")
        return ssim(other, reference)


def main():
    folder, runs, others = sys.argv[1], int(sys.argv[2]), sys.argv[3:]
    bmp = folder + "/picture.bmp"
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        with Image.open(bmp) as im:
            im.thumbnail((256, 256))
        times.append((time.perf_counter() - start) * 1000)
    times.sort()
    reference = reference_of(bmp)
    print("%.3f %.3f %.4f" % (times[0], times[len(times) // 2], ssim_of(folder + "/ours.ppm", reference)))
    for path in others:
        print("%s %.4f" % (path.rsplit("/", 1)[-1].rsplit(".", 1)[0], ssim_of(path, reference)))


if __name__ == "__main__":
    main()
