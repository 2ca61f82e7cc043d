#!/usr/bin/env python3
"""Makes the TGA, BMP and XCF files of tests/pictures/ and their manifest.txt.

Needs only the standard library. Where ImageMagick (/usr/bin/convert) and Netpbm are installed, some inputs are made
by them, and ImageMagick's reading of each TGA and BMP picture that it understands in the same way is required to
agree; for XCF it is SDL_image's. Where they are not, the files they made stay as they are.
"""
import ctypes
import ctypes.util
import pathlib
import random
import shutil
import struct
import subprocess
import zlib

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "tests" / "pictures"
CONVERT = "/usr/bin/convert" if pathlib.Path("/usr/bin/convert").exists() else None
FOOTER = bytes(8) + b"TRUEVISION-XFILE.\0"
manifest = []


# ---- the manifest

def magick_rgba(path):
    command = [CONVERT, path, "-auto-orient", "-depth", "8", "rgba:-"]
    return subprocess.run(command, capture_output=True).stdout


class Surface(ctypes.Structure):
    _fields_ = [("flags", ctypes.c_uint32), ("format", ctypes.c_void_p), ("w", ctypes.c_int), ("h", ctypes.c_int),
                ("pitch", ctypes.c_int), ("pixels", ctypes.c_void_p)]


def load_sdl():
    names = [ctypes.util.find_library(name) for name in ("SDL2_image-2.0", "SDL2-2.0")]
    if not all(names):
        return None
    image, sdl = (ctypes.CDLL(name) for name in names)
    image.IMG_Load.restype = sdl.SDL_ConvertSurfaceFormat.restype = ctypes.POINTER(Surface)
    sdl.SDL_ConvertSurfaceFormat.argtypes = [ctypes.POINTER(Surface), ctypes.c_uint32, ctypes.c_uint32]
    return image, sdl


SDL = load_sdl()
SDL_RGBA32 = 376840196  # bytes in the order R, G, B, A on little-endian machines


def sdl_rgba(path):
    image, sdl = SDL
    surface = image.IMG_Load(str(path).encode())
    if not surface:
        return b""
    surface = sdl.SDL_ConvertSurfaceFormat(surface, SDL_RGBA32, 0).contents
    rows = [ctypes.string_at(surface.pixels + y * surface.pitch, surface.w * 4) for y in range(surface.h)]
    return b"".join(rows)


def is_near(ours, theirs):
    """Equal but for rounding: colours count as much as their alpha lets them be seen."""
    if len(ours) != len(theirs):
        return False
    for i in range(0, len(ours), 4):
        a, b = ours[i:i + 4], theirs[i:i + 4]
        if abs(a[3] - b[3]) > 1 or any(abs(x * a[3] - y * b[3]) > 3 * 255 for x, y in zip(a[:3], b[:3])):
            return False
    return True


def agrees(path, rgba, near):
    """SDL_image lays layers on black and ImageMagick takes those without alpha for clear: either will do."""
    if path.suffix != ".xcf" or not SDL:
        theirs = magick_rgba(path) if CONVERT else rgba
        return theirs == rgba or near and is_near(rgba, theirs)
    if sdl_rgba(path) == rgba:
        return True
    theirs = magick_rgba(path) if CONVERT else rgba
    if set(rgba[3::4]) == {255}:
        theirs = bytes(255 if i % 4 == 3 else value for i, value in enumerate(theirs))
    return theirs == rgba or near and is_near(rgba, theirs)


def good(name, data, width, height, rgba, differs=None, near=False):
    """`differs`: why the other program's reading is another one. `near`: it rounds in another way."""
    assert len(rgba) == width * height * 4, (name, len(rgba))
    path = FOLDER / name
    if data is not None:
        path.write_bytes(data)
    source = "model: " + differs if differs else "near" if near else "tool"
    assert differs or agrees(path, rgba, near), name
    manifest.append(f"{name} OK {width} {height} {zlib.crc32(rgba):08x} {source}")


def bad(name, data):
    (FOLDER / name).write_bytes(data)
    manifest.append(f"{name} BAD")


# ---- pixels: lists of (r, g, b, a), row by row from the top

def picture(width, height, seed=1, alpha=False):
    rng = random.Random(seed)
    flat = [(x // 3 + y // 2) % 3 == 0 for y in range(height) for x in range(width)]
    noise = [tuple(rng.randrange(256) for _ in range(4)) for _ in flat]
    pixels = [((40, 90, 200, 255) if f else n) for f, n in zip(flat, noise)]
    return pixels if alpha else [(r, g, b, 255) for r, g, b, _ in pixels]


def rgba(pixels):
    return bytes(v for pixel in pixels for v in pixel)


def widen5(c):
    return c * 255 // 31


def grey_of(pixels):
    return [(r, r, r, a) for r, g, b, a in pixels]


# ---- TGA

def tga_head(width, height, kind, bits, descriptor=0x20, id_length=0, map_type=0, first=0, map_length=0, entry_bits=0):
    return struct.pack("<BBBHHBHHHHBB", id_length, map_type, kind, first, map_length, entry_bits, 0, 0, width, height,
                       bits, descriptor)


def tga_order(pixels, width, descriptor):
    rows = [pixels[i:i + width] for i in range(0, len(pixels), width)]
    if not descriptor & 0x20:
        rows.reverse()
    if descriptor & 0x10:
        rows = [row[::-1] for row in rows]
    return [pixel for row in rows for pixel in row]


def bgr(pixel):
    return bytes((pixel[2], pixel[1], pixel[0]))


def bgra(pixel):
    return bgr(pixel) + bytes((pixel[3],))


def packets(stored, longest=128):
    """Run-length packets over a list of stored pixels, runs across rows as well."""
    out, raw, i = b"", [], 0

    def flush():
        nonlocal out, raw
        while raw:
            part, raw = raw[:longest], raw[longest:]
            out += bytes([len(part) - 1]) + b"".join(part)

    while i < len(stored):
        run = 1
        while i + run < len(stored) and run < longest and stored[i + run] == stored[i]:
            run += 1
        if run > 1:
            flush()
            out += bytes([127 + run]) + stored[i]
        else:
            raw.append(stored[i])
        i += run
    flush()
    return out


def tga_inputs():
    w, h = 7, 5
    plain, clear = picture(w, h, 2), picture(w, h, 3, True)
    for d in (0x00, 0x10, 0x20, 0x30):
        stored = [bgr(p) for p in tga_order(plain, w, d)]
        side = None if not d & 0x10 else "right to left is not mirrored there"
        good(f"order_{d:02x}.tga", tga_head(w, h, 2, 24, d) + b"".join(stored), w, h, rgba(plain), side)
        good(f"order_{d:02x}_rle.tga", tga_head(w, h, 10, 24, d) + packets(stored), w, h, rgba(plain), side)
    for kind, code in ((2, lambda s: b"".join(s)), (10, packets)):
        name = "rle" if kind == 10 else "plain"
        good(f"bgra32_{name}.tga", tga_head(w, h, kind, 32, 0x28) + code([bgra(p) for p in clear]), w, h, rgba(clear))
        good(f"bgra32_no_alpha_bits_{name}.tga", tga_head(w, h, kind, 32, 0x20) + code([bgra(p) for p in clear]), w, h,
             rgba(clear), "a fourth byte is alpha even where the header counts no alpha bits")
        grey = grey_of(plain)
        good(f"grey8_{name}.tga", tga_head(w, h, kind + 1, 8) + code([bytes(p[:1]) for p in grey]), w, h, rgba(grey))
        grey = grey_of(clear)
        good(f"grey16_{name}.tga", tga_head(w, h, kind + 1, 16, 0x28) + code([bytes((p[0], p[3])) for p in grey]), w, h,
             rgba(grey), "there 16 bits of grey are 5-bit colours")
        words = [random.Random(i).randrange(65536) for i in range(w * h)]
        stored = code([struct.pack("<H", v) for v in words])
        colour = [tuple(widen5(v >> s & 31) for s in (10, 5, 0)) for v in words]
        good(f"bits15_{name}.tga", tga_head(w, h, kind, 15) + stored, w, h, rgba([c + (255,) for c in colour]),
             "5 bits are widened by rounding there")
        good(f"bits16_opaque_{name}.tga", tga_head(w, h, kind, 16) + stored, w, h, rgba([c + (255,) for c in colour]),
             "5 bits are widened by rounding there")
        good(f"bits16_alpha_{name}.tga", tga_head(w, h, kind, 16, 0x21) + stored, w, h,
             rgba([c + (255 if v >> 15 else 0,) for c, v in zip(colour, words)]), "5 bits are widened by rounding there")
    tga_maps()
    tga_edges()


def tga_maps():
    w, h = 6, 4
    colours = picture(9, 1, 5, True)
    indices = [(x * 5 + y) % 9 for y in range(h) for x in range(w)]
    five = [tuple(widen5(v >> 3) for v in c[:3]) + (255,) for c in colours]
    words = [struct.pack("<H", (c[0] >> 3) << 10 | (c[1] >> 3) << 5 | c[2] >> 3 | 0x8000) for c in colours]
    opaque = [c[:3] + (255,) for c in colours]
    entries = {15: (words, five), 16: (words, five), 24: ([bgr(c) for c in colours], opaque),
               32: ([bgra(c) for c in colours], colours)}
    for bits, (stored, shown) in entries.items():
        differs = None if bits == 24 else "map entries keep their alpha" if bits == 32 else "5 bits are widened by rounding there"
        head = tga_head(w, h, 1, 8, 0x20, 3, 1, 0, 9, bits)
        body = b"id." + b"".join(stored)
        good(f"map{bits}.tga", head + body + bytes(indices), w, h, rgba([shown[i] for i in indices]), differs)
        head = tga_head(w, h, 9, 16, 0x20, 0, 1, 300, 9, bits)
        wide = packets([struct.pack("<H", 300 + i) for i in indices])
        good(f"map{bits}_from_300_rle.tga", head + b"".join(stored) + wide, w, h, rgba([shown[i] for i in indices]),
             "the first index is not counted from there")
    head = tga_head(2, 1, 1, 8, 0x20, 0, 1, 5, 2, 24) + bytes(6)
    bad("map_index_below.tga", head + bytes((5, 4)))
    bad("map_index_behind.tga", head + bytes((6, 7)))
    bad("map_index_behind_rle.tga", tga_head(2, 1, 9, 8, 0x20, 0, 1, 5, 2, 24) + bytes(6) + bytes((0x81, 7)))
    bad("map_cut.tga", tga_head(2, 1, 1, 8, 0x20, 0, 1, 0, 200, 24) + bytes(40))
    bad("map_of_8_bits.tga", tga_head(2, 1, 1, 8, 0x20, 0, 1, 0, 2, 8) + bytes(2) + bytes(2))
    good("map_of_8_bits_footer.tga", tga_head(2, 1, 1, 8, 0x20, 0, 1, 0, 2, 8) + bytes((9, 200, 1, 0)) + FOOTER, 2, 1,
         bytes((200, 200, 200, 255, 9, 9, 9, 255)), "grey map entries")
    bad("map_of_12_bits_footer.tga", tga_head(2, 1, 1, 8, 0x20, 0, 1, 0, 2, 12) + bytes(6) + FOOTER)
    bad("map_missing_footer.tga", tga_head(2, 1, 1, 8) + bytes(2) + FOOTER)
    good("map_unused.tga", tga_head(1, 1, 2, 24, 0x20, 0, 1, 0, 2, 24) + bytes(6) + b"\1\2\3", 1, 1, b"\3\2\1\xff",
         "a map that colours do not need is skipped")


def tga_edges():
    bad("zeros_20.tga", bytes(20))
    bad("header_17.tga", tga_head(1, 1, 2, 24)[:17])
    bad("header_only.tga", tga_head(1, 1, 2, 24))
    fields = {"width_0": (0, 1, 2, 24), "height_0": (1, 0, 2, 24), "type_0": (1, 1, 0, 24), "type_4": (1, 1, 4, 24),
              "type_7": (1, 1, 7, 24), "type_12": (1, 1, 12, 24), "type_32": (1, 1, 32, 24), "colour_12": (1, 1, 2, 12),
              "colour_64": (1, 1, 2, 64), "map_24": (1, 1, 1, 24, 0x20, 0, 1, 0, 1, 24)}
    for name, values in fields.items():
        bad(f"bad_{name}.tga", tga_head(*values) + bytes(40))
        bad(f"bad_{name}_footer.tga", tga_head(*values) + bytes(40) + FOOTER)
    bad("map_type_2.tga", tga_head(1, 1, 2, 24, map_type=2) + bytes(40))
    good("map_type_2_footer.tga", tga_head(1, 1, 2, 24, map_type=2) + b"\1\2\3" + FOOTER, 1, 1, b"\3\2\1\xff",
         "the footer vouches for a header that makes no sense")
    good("colour_8_footer.tga", tga_head(2, 1, 2, 8) + b"\7\x80" + FOOTER, 2, 1, b"\7\7\7\xff\x80\x80\x80\xff",
         "one byte of colour is grey")
    good("footer.tga", tga_head(1, 1, 2, 32, 0x28) + b"\1\2\3\4" + FOOTER, 1, 1, b"\3\2\1\4")
    good("footer_is_data.tga", tga_head(3, 2, 3, 8) + FOOTER[20:], 3, 2,
         bytes(v for c in FOOTER[20:] for v in (c, c, c, 255)))
    good("long_id.tga", tga_head(1, 1, 3, 8, id_length=255) + bytes(255) + b"\x42", 1, 1, b"\x42\x42\x42\xff")
    bad("id_past_end.tga", tga_head(1, 1, 3, 8, id_length=255) + bytes(200) + FOOTER[:5])
    bad("pixels_one_short.tga", tga_head(3, 3, 2, 24) + bytes(26))
    good("bytes_behind.tga", tga_head(1, 2, 2, 24) + bytes(6) + b"more", 1, 2, bytes((0, 0, 0, 255)) * 2)
    w, h = 16, 8
    good("run_ends_on_last.tga", tga_head(w, h, 10, 24) + b"\xff\1\2\3", w, h, b"\3\2\1\xff" * 128)
    bad("run_one_past.tga", tga_head(127, 1, 10, 24) + b"\xff\1\2\3")
    bad("raw_one_past.tga", tga_head(2, 1, 10, 24) + b"\2" + bytes(9))
    bad("run_cut.tga", tga_head(w, h, 10, 24) + b"\xff\1\2")
    bad("packets_end_early.tga", tga_head(w, h, 10, 24) + b"\xfe\1\2\3")
    good("run_over_rows.tga", tga_head(3, 3, 11, 8) + b"\x84\5\x83\7", 3, 3,
         bytes(v for c in b"\5\5\5\5\5\7\7\7\7" for v in (c, c, c, 255)))
    bad("claims_everything.tga", tga_head(0x7FFF, 0x7FFF, 10, 32) + b"\xff\1\2\3\4")
    bad("claims_over_limit.tga", tga_head(0xFFFF, 0xFFFF, 10, 8) + b"\xff\1")


# ---- BMP

def bmp_file(header, palette, rows, offset=None, masks=b""):
    start = 14 + len(header) + len(masks) + len(palette) if offset is None else offset
    body = header + masks + palette
    return (b"BM" + struct.pack("<IHHI", 14 + len(body) + len(rows), 0, 0, start) + body).ljust(start, b"\0") + rows


def info_header(width, height, bits, compression=0, colours=0, size=40, planes=1, masks=b""):
    head = struct.pack("<IiiHHIIiiII", size, width, height, planes, bits, compression, 0, 2835, 2835, colours, 0)
    return head + masks.ljust(max(size - 40, 0), b"\0") if size > 40 else head


def core_header(width, height, bits, planes=1):
    return struct.pack("<IHHHH", 12, width, height, planes, bits)


def pad4(row):
    return row + bytes(-len(row) % 4)


def indexed_rows(indices, width, bits):
    rows = [indices[i:i + width] for i in range(0, len(indices), width)]
    out = []
    for row in rows:
        text = "".join(format(i, "b").zfill(bits) for i in row)
        text += "0" * (-len(text) % 8)
        out.append(pad4(bytes(int(text[i:i + 8], 2) for i in range(0, len(text), 8))))
    return out


def bmp_inputs():
    w, h = 7, 5
    plain = picture(w, h, 6)
    rows24 = [pad4(b"".join(bgr(p) for p in plain[y * w:y * w + w])) for y in range(h)]
    good("bits24.bmp", bmp_file(info_header(w, h, 24), b"", b"".join(rows24[::-1])), w, h, rgba(plain))
    good("bits24_top_down.bmp", bmp_file(info_header(w, -h, 24), b"", b"".join(rows24)), w, h, rgba(plain))
    good("bits24_core.bmp", bmp_file(core_header(w, h, 24), b"", b"".join(rows24[::-1])), w, h, rgba(plain))
    good("bits24_far_data.bmp", bmp_file(info_header(w, h, 24), b"", b"".join(rows24[::-1]), 100), w, h, rgba(plain),
         "the file's stated length is not looked at")
    for bits, count in ((1, 2), (4, 16), (4, 11), (8, 256), (8, 30)):
        colours = picture(count, 1, bits + count)
        indices = [(x * 3 + y * 5) % count for y in range(h) for x in range(w)]
        rows = b"".join(indexed_rows(indices, w, bits)[::-1])
        shown = rgba([colours[i] for i in indices])
        quads = b"".join(bgr(c) + b"\0" for c in colours)
        used = count if count != 1 << bits else 0
        good(f"bits{bits}_of_{count}.bmp", bmp_file(info_header(w, h, bits, 0, used), quads, rows), w, h, shown)
        if used == 0:
            triples = b"".join(bgr(c) for c in colours)
            good(f"bits{bits}_core.bmp", bmp_file(core_header(w, h, bits), triples, rows), w, h, shown)
    bmp_masks()
    bmp_edges()


def scaled(value, mask):
    if mask == 0:
        return 0
    shift = (mask & -mask).bit_length() - 1
    bits = bin(mask).count("1")
    top = 0xFFFFFFFF if bits > 30 else (1 << bits) - 1
    return (((value & mask) >> shift) * 255 + top // 2 & 0xFFFFFFFF) // top & 255


def masked(words, masks):
    return rgba([tuple(scaled(v, m) for m in masks[:3]) + (scaled(v, masks[3]) if masks[3] else 255,) for v in words])


def bmp_masks():
    w, h = 5, 3
    rng = random.Random(9)

    def words_of(size):
        return [rng.randrange(1 << size) for _ in range(w * h)]

    def stored(words, size):
        form = "<H" if size == 16 else "<I"
        rows = [pad4(b"".join(struct.pack(form, v) for v in words[y * w:y * w + w])) for y in range(h)]
        return b"".join(rows[::-1])

    five = (0x7C00, 0x3E0, 0x1F, 0)
    bytes8 = (0xFF0000, 0xFF00, 0xFF, 0xFF000000)
    words = words_of(16)
    good("bits16.bmp", bmp_file(info_header(w, h, 16), b"", stored(words, 16)), w, h, masked(words, five), near=True)
    for name, masks in {"565": (0xF800, 0x7E0, 0x1F, 0), "555": five, "zero": (0, 0, 0, 0)}.items():
        shown = masked(words, five if name == "zero" else masks)
        good(f"bits16_{name}.bmp", bmp_file(info_header(w, h, 16, 3), b"", stored(words, 16), masks=struct.pack("<3I", *masks[:3])),
             w, h, shown, "masks of nothing mean the usual ones" if name == "zero" else None, True)
    masks = (0xF00, 0xF0, 0xF, 0xF000)
    good("bits16_4444.bmp", bmp_file(info_header(w, h, 16, 6), b"", stored(words, 16), masks=struct.pack("<4I", *masks)), w, h,
         masked(words, masks), "compression 6 is not read there")
    words = words_of(32)
    good("bits32.bmp", bmp_file(info_header(w, h, 32), b"", stored(words, 32)), w, h, masked(words, bytes8),
         "the fourth byte is alpha")
    spare = [v & 0xFFFFFF for v in words]
    good("bits32_all_clear.bmp", bmp_file(info_header(w, h, 32), b"", stored(spare, 32)), w, h,
         masked(spare, bytes8[:3] + (0,)))
    all_masks = {"rgba": (0xFF000000, 0xFF0000, 0xFF00, 0xFF), "bgra": bytes8, "no_alpha": bytes8[:3] + (0,),
                 "ten_bits": (0x3FF00000, 0xFFC00, 0x3FF, 0xC0000000), "one_bit": (1 << 31, 1 << 15, 1, 0),
                 "gaps": (0xF0F, 0x5000, 0x30000, 0), "wide": (0x3FFFFFF, 0xFFFFFFFF, 0x7FFFFFFF, 0),
                 "no_red": (0, 0xFF00, 0xFF, 0xFF000000)}
    for name, masks in all_masks.items():
        plain = name in ("rgba", "bgra", "no_alpha")
        for size in (108, 124):
            head = info_header(w, h, 32, 3, size=size, masks=struct.pack("<4I", *masks))
            if size == 108 or plain:
                good(f"bits32_{name}_v{size}.bmp", bmp_file(head, b"", stored(words, 32)), w, h, masked(words, masks),
                     None if plain else "odd masks are scaled in another way there")
    head = info_header(w, h, 32, 3, size=52, masks=struct.pack("<3I", *bytes8[:3]))
    good("bits32_v52.bmp", bmp_file(head, b"", stored(words, 32)), w, h, masked(words, bytes8[:3] + (0,)),
         "the fourth byte is alpha there")
    head = info_header(w, h, 32, 6, size=56, masks=struct.pack("<4I", *bytes8))
    good("bits32_v56.bmp", bmp_file(head, b"", stored(words, 32)), w, h, masked(words, bytes8), "compression 6 is not read there")
    head = info_header(w, h, 32, 3, size=56, masks=struct.pack("<4I", *bytes8))
    good("bits32_v56_all_clear.bmp", bmp_file(head, b"", stored(spare, 32)), w, h, masked(spare, bytes8[:3] + (0,)),
         "clear alpha throughout is no alpha")


def bmp_edges():
    rows = bytes(4)
    one = lambda **k: bmp_file(info_header(1, 1, 24, **k), b"", rows)
    bad("text.bmp", b"BM is not always a bitmap, here it is the start of a sentence.")
    bad("short_25.bmp", one()[:25])
    for size in (0, 13, 39):
        bad(f"header_{size}.bmp", bmp_file(info_header(1, 1, 24, size=size), b"", rows))
    bad("header_past_end.bmp", bmp_file(info_header(1, 1, 24)[:0] + struct.pack("<I", 0xFFFFFFF8) + info_header(1, 1, 24)[4:], b"", rows))
    bad("planes_2.bmp", one(planes=2))
    bad("planes_0.bmp", one(planes=0))
    for compression in (1, 2, 4, 5, 7, 11):
        bad(f"compression_{compression}.bmp", one(compression=compression))
    for width, height in ((0, 1), (1, 0), (-1, 1), (1, -2 ** 31), (-2 ** 31, 1), (2 ** 31 - 1, 2 ** 31 - 1)):
        bad(f"size_{width}x{height}.bmp", bmp_file(info_header(width, height, 24), b"", rows))
    bad("core_width_0.bmp", bmp_file(core_header(0, 1, 24), b"", rows))
    for bits in (0, 2, 3, 12, 48, 64):
        bad(f"bits_{bits}.bmp", bmp_file(info_header(1, 1, bits), b"", bytes(64)))
    bad("data_at_end.bmp", bmp_file(info_header(1, 1, 24), b"", b""))
    bad("data_far_behind.bmp", bmp_file(info_header(1, 1, 24), b"", rows)[:10] + b"\xff\xff\xff\xff" + one()[14:])
    bad("row_short.bmp", bmp_file(info_header(1, 2, 24), b"", bytes(7)))
    bad("masks_cut.bmp", bmp_file(info_header(1, 1, 32, 3), b"", bytes(11), 54))
    bad("alpha_mask_cut.bmp", bmp_file(info_header(1, 1, 32, 6), b"", bytes(15), 54))
    palette = bytes(range(12))
    bad("index_past_palette.bmp", bmp_file(info_header(1, 1, 8, colours=3), palette, b"\3\0\0\0"))
    good("index_last.bmp", bmp_file(info_header(1, 1, 8, colours=3), palette, b"\2\0\0\0"), 1, 1, bytes((10, 9, 8, 255)))
    bad("palette_cut.bmp", bmp_file(info_header(1, 1, 8), b"", bytes(600)))
    bad("palette_of_all.bmp", bmp_file(info_header(1, 1, 8, colours=0xFFFFFFFF), b"", bytes(2000)))
    good("palette_of_300.bmp", bmp_file(info_header(1, 1, 8, colours=300), bytes(range(120)) * 10, b"\7\0\0\0"), 1, 1,
         bytes((30, 29, 28, 255)), "more colours than indices are no fault")
    for compression, skipped in ((3, 12), (6, 16)):
        head = info_header(1, 1, 8, compression, 2)
        good(f"palette_behind_masks_{compression}.bmp", bmp_file(head, bytes(range(8)), b"\1\0\0\0", masks=bytes(skipped)), 1,
             1, bytes((6, 5, 4, 255)), "the palette of bit fields stands behind the masks")


# ---- XCF

RGB, RGBA, GREY, GREYA, INDEXED, INDEXEDA = range(6)
CHANNELS = (3, 4, 1, 2, 1, 2)


def u32(*values):
    return b"".join(struct.pack(">I", v & 0xFFFFFFFF) for v in values)


def prop(kind, payload=b""):
    return u32(kind, len(payload)) + payload


def rle_plane(plane, long_form=False):
    out, i = b"", 0
    while i < len(plane):
        run = 1
        while i + run < len(plane) and plane[i + run] == plane[i] and run < (4096 if long_form else 127):
            run += 1
        if long_form:
            out += (b"\x7f" + struct.pack(">H", run) + plane[i:i + 1]) if run > 1 else b"\x80\0\1" + plane[i:i + 1]
        elif run > 1:
            out += bytes([run - 1]) + plane[i:i + 1]
        else:
            end = i + 1
            while end < len(plane) and end - i < 127 and (end + 1 == len(plane) or plane[end] != plane[end + 1]):
                end += 1
            run = end - i
            out += bytes([256 - run]) + plane[i:end]
        i += run
    return out


def rle(data, channels, long_form=False):
    return b"".join(rle_plane(data[c::channels], long_form) for c in range(channels))


class Layer:
    """`samples`: a list of tuples, one for each pixel, as the layer's kind stores them."""

    def __init__(self, width, height, kind, samples, x=0, y=0, opacity=None, visible=True, floating=None, name="Layer",
                 extra=b"", spoil=None, **fields):
        self.__dict__.update(locals())
        self.__dict__.update(fields)


def xcf_file(version, width, height, base, layers, compression=1, properties=b"", precision=None, channels=0,
             long_form=False, behind=b"", offset_size=None, tail=None):
    wide = version > 10
    word = lambda v: struct.pack(">Q" if wide else ">I", v)
    text = b"file" if version == 0 else b"v%03d" % version
    out = b"gimp xcf " + text + b"\0" + u32(width, height, base)
    if version >= 4:
        out += u32((150 if version > 6 else 0) if precision is None else precision)
    out += (prop(17, bytes([compression])) if compression is not None else b"") + properties + prop(0)
    size = len(word(0))
    at = len(out) + (len(layers) + 2) * size
    offsets, body = [], b""
    for layer in layers:
        offsets.append(at + len(body))
        body += layer_bytes(layer, at + len(body), word, size, compression or 0, long_form)
    return out + b"".join(word(o) for o in offsets) + word(0) + word(0) + body + behind


def layer_bytes(layer, start, word, size, compression, long_form):
    head = u32(layer.width, layer.height, layer.kind, len(layer.name) + 1) + layer.name.encode() + b"\0"
    if layer.opacity is not None:
        head += prop(6, u32(layer.opacity))
    head += prop(8, u32(1 if layer.visible else 0)) + prop(15, u32(layer.x, layer.y))
    if layer.floating is not None:
        head += prop(33, struct.pack(">f", layer.floating))
    head += layer.extra + prop(0)
    hierarchy = start + len(head) + 2 * size
    head += word(hierarchy) + word(0)
    channels = CHANNELS[layer.kind]
    level = hierarchy + 12 + 2 * size
    out = head + u32(layer.width, layer.height, channels) + word(level) + word(0)
    across, down = -(-layer.width // 64), -(-layer.height // 64)
    tiles = [tile_bytes(layer, c, r, channels, compression, long_form) for r in range(down) for c in range(across)]
    at = level + 8 + (len(tiles) + 1) * size
    out += u32(layer.width, layer.height)
    for tile in tiles:
        out += word(at)
        at += len(tile)
    out = out + word(0) + b"".join(tiles)
    return layer.spoil(out) if layer.spoil else out


def tile_bytes(layer, column, row, channels, compression, long_form):
    data = b""
    for y in range(row * 64, min(row * 64 + 64, layer.height)):
        first = y * layer.width + column * 64
        last = y * layer.width + min(column * 64 + 64, layer.width)
        data += b"".join(bytes(s) for s in layer.samples[first:last])
    if compression == 1:
        return rle(data, channels, long_form)
    return zlib.compress(data) if compression == 2 else data


def to_rgba(kind, sample, palette):
    if kind in (RGB, RGBA):
        colour = sample[:3]
    elif kind in (GREY, GREYA):
        colour = (sample[0],) * 3
    else:
        colour = palette[sample[0]] if sample[0] < len(palette) else (0, 0, 0)
    return tuple(colour) + (sample[-1] if kind % 2 else 255,)


def over(s, d):
    a, b = s[3], d[3]
    if a == 0 and b > 0:
        return d
    if a == 255 or b == 0:
        return s
    i = 255 - a
    alpha = a + (i * b + 127) // 255
    return tuple((s[c] * a + alpha // 2 + (i * b * d[c] + 127) // 255) // alpha for c in range(3)) + (alpha & 255,)


def flatten(width, height, layers, palette=()):
    canvas = [(0, 0, 0, 0)] * (width * height)
    for layer in reversed(layers):
        opacity = 255 if layer.opacity is None else min(layer.opacity, 255)
        if layer.floating is not None:
            f = struct.unpack(">f", struct.pack(">f", layer.floating))[0]
            opacity = 0 if not f > 0 else 255 if not f < 1 else int(255 * f + 0.5)
        if not layer.visible or opacity == 0:
            continue
        for i, sample in enumerate(layer.samples):
            x, y = layer.x + i % layer.width, layer.y + i // layer.width
            if 0 <= x < width and 0 <= y < height:
                r, g, b, a = to_rgba(layer.kind, sample, palette)
                at = y * width + x
                canvas[at] = over((r, g, b, (opacity * a + 127) // 255), canvas[at])
    return rgba(canvas)


def samples(kind, width, height, seed, colours=0):
    source = picture(width, height, seed, True)
    pick = {RGB: lambda p: p[:3], RGBA: lambda p: p, GREY: lambda p: p[:1], GREYA: lambda p: (p[0], p[3]),
            INDEXED: lambda p: (p[0] % colours,), INDEXEDA: lambda p: (p[0] % colours, p[3])}[kind]
    return [tuple(pick(p)) for p in source]


PALETTE = [(i * 23 % 256, 255 - i * 9, i * 57 % 256) for i in range(11)]
COLOURMAP = prop(1, u32(len(PALETTE)) + bytes(v for c in PALETTE for v in c))
NAMES = {RGB: "rgb", RGBA: "rgba", GREY: "grey", GREYA: "greya", INDEXED: "indexed", INDEXEDA: "indexeda"}


def xcf_inputs():
    for kind, name in NAMES.items():
        for version, compression in ((0, 1), (3, 0), (4, 1), (11, 2), (11, 1), (12, 0)):
            layer = Layer(9, 6, kind, samples(kind, 9, 6, kind + 10, len(PALETTE)))
            data = xcf_file(version, 9, 6, kind // 2, [layer], compression, COLOURMAP if kind >= INDEXED else b"")
            clear = kind % 2 == 1
            differs = "indexed alpha is read in another way there" if kind == INDEXEDA else \
                "uncompressed tiles are read in another way there" if compression == 0 else \
                "the older reader stops at version 10 or reads precision in another way" if version > 3 else None
            good(f"{name}_v{version}_c{compression}.xcf", data, 9, 6, flatten(9, 6, [layer], PALETTE), differs, clear)
    xcf_stacks()
    xcf_versions()
    xcf_tiles()
    xcf_damage()


def xcf_stacks():
    big = Layer(70, 66, RGB, samples(RGB, 70, 66, 20))
    good("two_by_two_tiles.xcf", xcf_file(0, 70, 66, 0, [big]), 70, 66, flatten(70, 66, [big]))
    good("two_by_two_tiles_zlib.xcf", xcf_file(11, 70, 66, 0, [big], 2), 70, 66, flatten(70, 66, [big]),
         "the older reader knows no zlib tiles")
    below = Layer(8, 7, RGB, samples(RGB, 8, 7, 21), x=-2, y=-1)
    middle = Layer(6, 5, RGBA, samples(RGBA, 6, 5, 22), x=3, y=4, opacity=170)
    top = Layer(5, 9, GREYA, samples(GREYA, 5, 9, 23), x=6, y=-3, floating=0.7)
    hidden = Layer(5, 5, RGBA, samples(RGBA, 5, 5, 24), visible=False)
    stack = [top, middle, hidden, below]
    reason = "grey layers in a colour picture and float opacities are read in another way there"
    good("stack.xcf", xcf_file(10, 10, 8, 0, stack), 10, 8, flatten(10, 8, stack), reason)
    good("stack_small_canvas.xcf", xcf_file(10, 4, 3, 0, stack), 4, 3, flatten(4, 3, stack), reason)
    good("stack_large_canvas.xcf", xcf_file(11, 40, 30, 0, stack, 2), 40, 30, flatten(40, 30, stack), reason)
    pair = [Layer(6, 5, RGBA, samples(RGBA, 6, 5, 25), opacity=128), Layer(6, 5, RGBA, samples(RGBA, 6, 5, 26))]
    good("pair.xcf", xcf_file(0, 6, 5, 0, pair), 6, 5, flatten(6, 5, pair), "the layer's opacity is ignored there")
    one = samples(RGBA, 4, 4, 27)
    for name, fields in {"300": dict(opacity=300), "minus": dict(opacity=-1), "0": dict(opacity=0),
                         "float_0": dict(floating=0.0), "float_nan": dict(floating=float("nan")),
                         "float_2": dict(floating=2.0), "float_tiny": dict(floating=0.001),
                         "float_last": dict(opacity=3, floating=0.5)}.items():
        layer = Layer(4, 4, RGBA, one, **fields)
        shown = Layer(4, 4, RGBA, one, **(dict(opacity=255) if name == "minus" else fields))
        good(f"opacity_{name}.xcf", xcf_file(0, 4, 4, 0, [layer]), 4, 4, flatten(4, 4, [shown]), "limits of opacity")
    layer = Layer(4, 4, RGBA, one, floating=0.5, extra=prop(6, u32(77)))
    good("opacity_byte_last.xcf", xcf_file(0, 4, 4, 0, [layer]), 4, 4, flatten(4, 4, [Layer(4, 4, RGBA, one, opacity=77)]),
         "of two opacities the last counts")
    short = prop(6, b"\0\0\0") + prop(8, b"\0\0\0") + prop(15, bytes(7)) + prop(33, b"\0\0\0") + prop(99, b"anything")
    layer = Layer(4, 4, RGBA, one, x=1, y=1, opacity=200, extra=short)
    good("short_properties.xcf", xcf_file(0, 4, 4, 0, [layer]), 4, 4, flatten(4, 4, [layer]), "properties too short are skipped")
    layer = Layer(4, 4, RGBA, one, extra=prop(8, b"\0\1\0\0") + prop(7, u32(9)))
    good("visible_by_any_byte.xcf", xcf_file(0, 4, 4, 0, [layer]), 4, 4, flatten(4, 4, [layer]), "layer modes are ignored")
    far = [Layer(4, 4, RGBA, one, x=2 ** 31 - 1, y=2 ** 31 - 1), Layer(4, 4, RGBA, one, x=-2 ** 31, y=-2 ** 31)]
    good("far_away.xcf", xcf_file(0, 3, 3, 0, far), 3, 3, bytes(36), "nothing of the layers is on the canvas")


def xcf_versions():
    one = Layer(3, 2, RGBA, samples(RGBA, 3, 2, 28))
    shown = flatten(3, 2, [one])
    for version in (1, 2, 5, 9, 10, 13, 999):
        good(f"version_{version}.xcf", xcf_file(version, 3, 2, 0, [one]), 3, 2, shown, "every version is read", False)
    for precision in (0, 100, 150):
        good(f"precision_{precision}.xcf", xcf_file(7, 3, 2, 0, [one], precision=precision), 3, 2, shown, "linear storage too")
    for precision in (1, 200, 250, 600):
        bad(f"precision_{precision}.xcf", xcf_file(7, 3, 2, 0, [one], precision=precision))
    data = xcf_file(0, 3, 2, 0, [one])
    for name, text in {"word": b"fil3", "letters": b"v01x", "capital": b"V001", "sign": b"v-01"}.items():
        bad(f"version_{name}.xcf", data[:9] + text + data[13:])
    bad("terminator.xcf", data[:13] + b"\1" + data[14:])
    bad("base_3.xcf", xcf_file(0, 3, 2, 3, [one]))
    bad("width_0.xcf", xcf_file(0, 0, 2, 0, [one]))
    bad("height_0.xcf", xcf_file(0, 3, 0, 0, [one]))
    bad("no_layers.xcf", xcf_file(0, 3, 2, 0, []))
    bad("short_29.xcf", data[:29])
    bad("end_with_length.xcf", data.replace(prop(17, b"\1") + prop(0), prop(17, b"\1") + u32(0, 4) + b"abcd"))
    bad("property_past_end.xcf", data.replace(prop(17, b"\1"), u32(17, 0xFFFFFFFF) + b"\1"))
    bad("canvas_over_limit.xcf", xcf_file(0, 32768, 32768, 0, [one]))
    raw = Layer(3, 2, RGB, samples(RGB, 3, 2, 29))
    good("no_compression_property.xcf", xcf_file(0, 3, 2, 0, [raw], None), 3, 2, flatten(3, 2, [raw]), "no property is 0")
    good("empty_compression_property.xcf", xcf_file(0, 3, 2, 0, [raw], None, prop(17)), 3, 2, flatten(3, 2, [raw]), "no property is 0")
    bad("compression_3.xcf", xcf_file(0, 3, 2, 0, [raw], 3))
    indexed = Layer(3, 1, INDEXED, [(0,), (10,), (11,)])
    for name, properties, palette in (("past_palette", COLOURMAP, PALETTE), ("no_palette", b"", ()),
                                      ("palette_of_257", prop(1, u32(257) + bytes(771)), ()),
                                      ("palette_cut", prop(1, u32(11) + bytes(32)), ()),
                                      ("palette_of_3_bytes", prop(1, b"\0\0\0"), ())):
        good(f"{name}.xcf", xcf_file(0, 3, 1, 2, [indexed], properties=properties), 3, 1, flatten(3, 1, [indexed], palette),
             "an index past the palette is black")


def xcf_tiles():
    one = Layer(6, 5, RGBA, samples(RGBA, 6, 5, 30))
    shown = flatten(6, 5, [one])
    good("rle_long_forms.xcf", xcf_file(0, 6, 5, 0, [one], long_form=True), 6, 5, shown, near=True)
    good("zlib_bytes_behind.xcf", xcf_file(11, 6, 5, 0, [one], 2, behind=b"behind the last tile"), 6, 5, shown,
         "the older reader knows no zlib tiles")
    flat = Layer(2, 1, GREY, [(7,), (7,)])
    base = xcf_file(0, 2, 1, 1, [flat])
    assert base.endswith(b"\1\7")
    for name, stream, ok in (("run_of_2", b"\1\7", 1), ("run_of_3", b"\2\7", 0), ("run_of_1_twice", b"\0\7\0\7", 1),
                             ("literal_2", b"\xfe\7\7", 1), ("literal_3", b"\xfd\7\7\7", 0), ("long_run", b"\x7f\0\2\7", 1),
                             ("long_run_0", b"\x7f\0\0\7\1\7", 0), ("long_literal", b"\x80\0\2\7\7", 1),
                             ("long_literal_0", b"\x80\0\0\1\7", 0), ("long_literal_cut", b"\x80\0\2\7", 0), ("cut", b"\1", 0),
                             ("count_cut", b"\x7f\0", 0), ("empty", b"", 0), ("bytes_behind", b"\1\7rest", 1)):
        data = base[:-2] + stream
        if ok:
            good(f"rle_{name}.xcf", data, 2, 1, flatten(2, 1, [flat]), None if stream[0] != 127 else "a long run")
        else:
            bad(f"rle_{name}.xcf", data)
    deep = xcf_file(11, 2, 1, 1, [flat], 2)
    packed = zlib.compress(b"\7\7")
    assert deep.endswith(packed)
    bad("zlib_too_long.xcf", deep[:-len(packed)] + zlib.compress(b"\7\7\7"))
    bad("zlib_too_short.xcf", deep[:-len(packed)] + zlib.compress(b"\7"))
    bad("zlib_bomb.xcf", deep[:-len(packed)] + zlib.compress(bytes(100000)))
    bad("zlib_wrong_sum.xcf", deep[:-1] + bytes([deep[-1] ^ 1]))
    bad("zlib_cut.xcf", deep[:-1])
    raw = xcf_file(0, 2, 1, 1, [flat], 0)
    bad("raw_cut.xcf", raw[:-1])
    wide = Layer(65, 1, GREY, [(x,) for x in range(65)])
    shared = xcf_file(0, 65, 1, 1, [wide], 0)
    first = u32(len(shared) - 65)
    at = shared.rindex(u32(len(shared) - 1))
    twisted = shared[:at] + first + shared[at + 4:]
    good("raw_tiles_shared.xcf", twisted, 65, 1, rgba([(x % 64,) * 3 + (255,) for x in range(65)]), "raw tiles may share bytes")


def xcf_damage():
    one = Layer(3, 2, GREY, samples(GREY, 3, 2, 31))
    other = Layer(3, 2, GREY, samples(GREY, 3, 2, 32))
    shown = flatten(3, 2, [other])

    def spoil_at(position, value):
        return lambda data: data[:position] + value + data[position + len(value):]

    # Places in a layer of ours: width, height, type, name (4 + 6), visible (12), offsets (16), end (8).
    places = {"width": 0, "height": 4, "type": 8, "name": 12, "property": 30, "hierarchy": 58, "hierarchy_width": 66,
              "hierarchy_height": 70, "channels": 74, "level": 78, "level_width": 86, "level_height": 90, "tile": 94,
              "last_tile": 98}
    for name, place in places.items():
        for value, text in ((b"\xff\xff\xff\xff", "ones"), (b"\0\0\0\0", "zero")):
            if (name, text) in (("name", "zero"), ("property", "zero"), ("last_tile", "zero"), ("property", "ones")):
                continue
            layer = Layer(3, 2, GREY, one.samples, spoil=spoil_at(place, value))
            bad(f"{name}_{text}.xcf", xcf_file(0, 3, 2, 1, [layer, other]))
            hidden = Layer(3, 2, GREY, one.samples, visible=False, spoil=spoil_at(place, value))
            data = xcf_file(0, 3, 2, 1, [hidden, other])
            if (name, text) in (("width", "zero"), ("height", "zero"), ("name", "ones"), ("hierarchy", "zero")):
                bad(f"hidden_{name}_{text}.xcf", data)
            elif text == "ones":
                good(f"hidden_{name}_{text}.xcf", data, 3, 2, shown, "pixels of hidden layers are not looked at")
    data = xcf_file(0, 3, 2, 1, [one])
    layers_at = 26 + 9 + 8
    bad("layer_past_end.xcf", data[:layers_at] + u32(len(data)) + data[layers_at + 4:])
    bad("layer_at_header.xcf", data[:layers_at] + u32(1) + data[layers_at + 4:])
    wide = xcf_file(11, 3, 2, 1, [one])
    bad("layer_high_word.xcf", wide[:30 + 17] + u32(1) + wide[30 + 21:])
    bad("layers_unended.xcf", data[:layers_at] + u32(*[60] * 50))
    bad("layers_many.xcf", data[:layers_at] + u32(*[44] * 3000) + u32(0))


# ---- inputs made by other programs

def pam(pixels, width, height):
    head = f"P7\nWIDTH {width}\nHEIGHT {height}\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n"
    return head.encode() + rgba(pixels)


def ppm(pixels, width, height):
    return f"P6\n{width} {height}\n255\n".encode() + b"".join(bytes(p[:3]) for p in pixels)


def foreign(name, command, source, pixels, w, h, differs=None):
    if shutil.which(command[0]):
        result = subprocess.run(command, input=source, capture_output=True)
        assert result.returncode == 0, result.stderr
        (FOLDER / name).write_bytes(result.stdout)
    good(name, None, w, h, rgba(pixels), differs)


def foreign_inputs():
    w, h = 13, 9
    plain, clear = picture(w, h, 40), picture(w, h, 41, True)
    few = [PALETTE[(i * 7 // 3) % 11] + (255,) for i in range(w * h)]
    ink = [((0, 0, 0, 255) if i % 3 else (255, 255, 255, 255)) for i in range(w * h)]
    grey = grey_of(plain)
    magick = "/usr/bin/convert"
    for name, flags, source, pixels in (
            ("magick_plain.tga", ["-compress", "none"], ppm, plain), ("magick_rle.tga", ["-compress", "rle"], ppm, plain),
            ("magick_alpha.tga", ["-compress", "none"], pam, clear), ("magick_alpha_rle.tga", ["-compress", "rle"], pam, clear),
            ("magick_few.tga", ["-type", "palette", "-compress", "none"], ppm, few), ("magick_grey.tga", ["-type", "grayscale"], ppm, grey),
            ("magick_alpha.bmp", [], pam, clear), ("magick_plain.bmp", [], ppm, plain), ("magick_v3.bmp", [], ppm, plain),
            ("magick_v2.bmp", [], ppm, plain), ("magick_few.bmp", ["-type", "palette", "-compress", "none"], ppm, few),
            ("magick_ink.bmp", ["-monochrome"], ppm, ink), ("magick_grey.bmp", ["-type", "grayscale"], ppm, grey)):
        form = {"magick_v3.bmp": "bmp3", "magick_v2.bmp": "bmp2"}.get(name, name[-3:])
        foreign(name, [magick, "-", "-orient", "top-left", *flags, f"{form}:-"], source(pixels, w, h), pixels, w, h)
    for name, command, pixels in (("netpbm.tga", ["ppmtotga", "-rgb", "-norle"], plain), ("netpbm_rle.tga", ["ppmtotga", "-rgb"], plain),
                                  ("netpbm_few.tga", ["ppmtotga", "-cmap"], few), ("netpbm.bmp", ["ppmtobmp"], plain),
                                  ("netpbm_few.bmp", ["ppmtobmp"], few), ("netpbm_os2.bmp", ["ppmtobmp", "-os2"], few)):
        foreign(name, command, ppm(pixels, w, h), pixels, w, h)


def main():
    FOLDER.mkdir(exist_ok=True)
    tga_inputs()
    bmp_inputs()
    xcf_inputs()
    foreign_inputs()
    head = ["# Made by tools/make_picture_inputs.py.",
            "# file OK width height crc32-of-RGBA source-of-the-sum, or: file BAD",
            "# Sources: tool, ImageMagick or SDL_image reads the same; near, it rounds in another way; model, it reads another picture."]
    (FOLDER / "manifest.txt").write_text("\n".join(head + manifest) + "\n")


main()
