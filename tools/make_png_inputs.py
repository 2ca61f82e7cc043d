#!/usr/bin/env python3
"""Makes tests/images/*.png and tests/images/manifest.txt.

Needs only the standard library. Where Pillow and ImageMagick's `convert` are installed, a few inputs are made by
them as well, and Pillow's reading of each picture that it understands in the same way is required to agree.
Deterministic: running it again leaves the folder as it is.
"""
import pathlib
import random
import struct
import subprocess
import tempfile
import zlib

try:
    from PIL import Image
except ImportError:
    Image = None

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "tests" / "images"
SIGNATURE = b"\x89PNG\r\n\x1a\n"
GREY, RGB, PALETTE, GREY_ALPHA, RGBA = 0, 2, 3, 4, 6
CHANNELS = {GREY: 1, RGB: 3, PALETTE: 1, GREY_ALPHA: 2, RGBA: 4}
ADAM7 = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]
manifest = []


# ---- the file around the picture

def chunk(kind, data=b"", crc_flip=0):
    crc = zlib.crc32(kind + data) ^ crc_flip
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", crc)


def ihdr(width, height, depth, colour, compression=0, filtering=0, interlace=0):
    return chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour, compression, filtering, interlace))


def png(*chunks):
    return SIGNATURE + b"".join(chunks) + chunk(b"IEND")


def idat(stream, pieces=1):
    size = -(-len(stream) // pieces)
    return b"".join(chunk(b"IDAT", stream[i:i + size]) for i in range(0, len(stream), size))


def actl(frames, size=8):
    return chunk(b"acTL", struct.pack(">II", frames, 0)[:size].ljust(size, b"\0"))


def fctl(width, height, x=0, y=0, dispose=0, blend=0, sequence=0, extra=b""):
    return chunk(b"fcTL", struct.pack(">IIIIIHHBB", sequence, width, height, x, y, 1, 10, dispose, blend) + extra)


def fdat(stream, sequence=0):
    return chunk(b"fdAT", struct.pack(">I", sequence) + stream)


# ---- rows and filters. A picture is a list of rows, a row a list of pixels, a pixel a tuple of samples.

def row_bytes(row, depth):
    form = ">B" if depth == 8 else ">H"
    return b"".join(struct.pack(form, sample) for pixel in row for sample in pixel)


def paeth(a, b, c):
    p = a + b - c
    return min((abs(p - a), 0, a), (abs(p - b), 1, b), (abs(p - c), 2, c))[2]


def filter_row(kind, row, prior, step):
    out = bytearray([kind])
    for i, value in enumerate(row):
        a = row[i - step] if i >= step else 0
        b = prior[i]
        c = prior[i - step] if i >= step else 0
        out.append((value - [0, a, b, (a + b) // 2, paeth(a, b, c)][kind if kind < 5 else 0]) & 255)
    return bytes(out)


def filtered(picture, depth, filters=(0, 1, 2, 3, 4), interlace=0):
    """The data to deflate. Row n of a pass takes filters[n % len(filters)]."""
    out = b""
    for x, y, dx, dy in ADAM7 if interlace else [(0, 0, 1, 1)]:
        prior = None
        for n, row in enumerate(picture[y::dy]):
            raw = row_bytes(row[x::dx], depth)
            if not raw:
                break
            step = len(row[0]) * depth // 8
            out += filter_row(filters[n % len(filters)], raw, prior or bytes(len(raw)), step)
            prior = raw
    return out


def scale(sample, depth):
    return sample if depth == 8 else (sample * 255 + 32767) // 65535


def to_rgba(picture, colour, depth, palette=(), trns=(), key=None):
    out = []
    for row in picture:
        for pixel in row:
            s = [scale(v, depth) for v in pixel]
            opaque = 0 if key is not None and tuple(pixel) == tuple(key) else 255
            if colour == GREY:
                out += [s[0]] * 3 + [opaque]
            elif colour == RGB:
                out += s + [opaque]
            elif colour == PALETTE:
                out += list(palette[pixel[0]]) + [trns[pixel[0]] if pixel[0] < len(trns) else 255]
            elif colour == GREY_ALPHA:
                out += [s[0]] * 3 + [s[1]]
            else:
                out += s
    return bytes(out)


def over(s, d):
    a, b = s[3], d[3]
    if a == 0 and b > 0:
        return d
    if a == 255 or b == 0:
        return s
    i = 255 - a
    alpha = a + (i * b + 127) // 255
    return bytes((s[c] * a + alpha // 2 + (i * b * d[c] + 127) // 255) // alpha for c in range(3)) + bytes([alpha])


def lay(canvas, width, layer, layer_width, x, y, blend):
    canvas = bytearray(canvas)
    for n in range(len(layer) // 4):
        at = ((y + n // layer_width) * width + x + n % layer_width) * 4
        source = layer[4 * n:4 * n + 4]
        canvas[at:at + 4] = over(source, bytes(canvas[at:at + 4])) if blend else source
    return bytes(canvas)


# ---- deflate by hand

class Bits:
    def __init__(self):
        self.value, self.count = 0, 0

    def put(self, value, count):
        self.value |= value << self.count
        self.count += count
        return self

    def code(self, code):
        """A Huffman code as text of 0 and 1, first bit first."""
        for digit in code:
            self.put(int(digit), 1)
        return self

    def align(self):
        self.count += -self.count % 8
        return self

    def bytes(self):
        return self.value.to_bytes((self.count + 7) // 8, "little")


def canonical(lengths):
    codes, code = {}, 0
    for length in range(1, 16):
        for symbol, own in enumerate(lengths):
            if own == length:
                codes[symbol] = format(code, "b").zfill(length)
                code += 1
        code <<= 1
    return codes


FIXED = canonical([8] * 144 + [9] * 112 + [7] * 24 + [8] * 8)


def fixed_block(symbols, final=1):
    bits = Bits().put(final, 1).put(1, 2)
    for symbol in symbols:
        bits.code(FIXED[symbol]) if isinstance(symbol, int) else bits.code(symbol)
    return bits


def dynamic_block(literals, distances, tail, plain=True, runs=None):
    """Code lengths are sent as themselves, or by `runs` of (symbol, extra, extra bits). `tail` codes follow."""
    bits = Bits().put(1, 1).put(2, 2).put(len(literals) - 257, 5).put(len(distances) - 1, 5).put(15, 4)
    own = [4] * 16 + [0] * 3 if plain else [4] * 13 + [0] * 3 + [4] * 3
    for symbol in (16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15):
        bits.put(own[symbol], 3)
    codes = canonical(own)
    for symbol, extra, size in runs or [(length, 0, 0) for length in literals + distances]:
        bits.code(codes[symbol]).put(extra, size)
    for code in tail:
        bits.code(code)
    return bits


def wrap(deflated, data=b"\0\0", header=b"\x78\x01", adler_flip=0, behind=b""):
    body = deflated.bytes() if isinstance(deflated, Bits) else deflated
    return header + body + behind + struct.pack(">I", zlib.adler32(data) ^ adler_flip)


def raw_deflate(data, level=9, strategy=0):
    squeezer = zlib.compressobj(level, zlib.DEFLATED, -15, 9, strategy)
    return squeezer.compress(data) + squeezer.flush()


# ---- the manifest

def pillow_rgba(path):
    with Image.open(path) as image:
        image.load()
        return image.convert("RGBA").tobytes()


def good(name, data, width, height, rgba, oracle=True):
    """`oracle`: Pillow must read the same picture."""
    assert len(rgba) == width * height * 4, name
    path = FOLDER / (name + ".png")
    path.write_bytes(data)
    if oracle and Image:
        assert pillow_rgba(path) == rgba, name
    source = "tool" if oracle else "model"
    manifest.append(f"{path.name} OK {width} {height} {zlib.crc32(rgba):08x} {source}")


def bad(name, data):
    path = FOLDER / (name + ".png")
    path.write_bytes(data)
    manifest.append(f"{path.name} BAD")


# ---- the inputs

def picture(width, height, colour, depth, seed=1):
    """Smooth ramps with noise and flat patches."""
    rng = random.Random(seed)
    top = (1 << depth) - 1
    rows = []
    for y in range(height):
        row = []
        for x in range(width):
            flat = (x // 5 + y // 5) % 3 == 0
            base = [(x * 11 + y * 5) % 256, (x * 3 + y * 13) % 256, (x * y) % 256, 255 if flat else (x * 40) % 256]
            values = [v / 255 if flat else min(255, max(0, v + rng.randrange(-9, 10))) / 255 for v in base]
            if colour == GREY_ALPHA:
                values = [values[0], values[3]]
            row.append(tuple(int(v * top) for v in values[:CHANNELS[colour]]))
        rows.append(row)
    return rows


def colour_types():
    names = {GREY: "grey", RGB: "rgb", GREY_ALPHA: "grey_alpha", RGBA: "rgba"}
    for colour, name in names.items():
        for depth in (8, 16):
            for interlace in (0, 1):
                width, height = (23, 17) if interlace else (37, 21)
                pixels = picture(width, height, colour, depth, colour + depth)
                data = png(ihdr(width, height, depth, colour, interlace=interlace),
                           idat(zlib.compress(filtered(pixels, depth, interlace=interlace))))
                rgba = to_rgba(pixels, colour, depth)
                good(f"{name}{depth}" + ("_adam7" if interlace else ""), data, width, height, rgba, depth == 8)
    for kind in range(5):
        for colour in (RGB, RGBA):
            pixels = picture(19, 9, colour, 8, kind)
            data = png(ihdr(19, 9, 8, colour), idat(zlib.compress(filtered(pixels, 8, (kind,)))))
            good(f"{names[colour]}8_filter{kind}", data, 19, 9, to_rgba(pixels, colour, 8))
    for width, height in ((1, 1), (1, 9), (2, 3), (5, 1), (3, 5)):
        pixels = picture(width, height, RGB, 8, width)
        stream = zlib.compress(filtered(pixels, 8, (4, 3), 1))
        good(f"rgb8_adam7_{width}x{height}", png(ihdr(width, height, 8, RGB, interlace=1), idat(stream)), width,
             height, to_rgba(pixels, RGB, 8))


def keys_and_palettes():
    grey = [[(x * 16 + y,) for x in range(8)] for y in range(4)]
    stream = idat(zlib.compress(filtered(grey, 8)))
    for name, key, matched in (("grey8_key", 0x21, (0x21,)), ("grey8_key_beyond_byte", 0x0121, None)):
        data = png(ihdr(8, 4, 8, GREY), chunk(b"tRNS", struct.pack(">H", key)), stream)
        good(name, data, 8, 4, to_rgba(grey, GREY, 8, key=matched), matched is not None)
    deep = [[(0x1234,), (0x1235,), (0x12FF,), (0x1134,)]]
    data = png(ihdr(4, 1, 16, GREY), chunk(b"tRNS", b"\x12\x34"), idat(zlib.compress(filtered(deep, 16))))
    good("grey16_key", data, 4, 1, to_rgba(deep, GREY, 16, key=(0x1234,)), False)
    rgb = [[(1, 2, 3), (1, 2, 4), (0, 2, 3), (1, 2, 3)]]
    data = png(ihdr(4, 1, 8, RGB), chunk(b"tRNS", b"\0\1\0\2\0\3"), idat(zlib.compress(filtered(rgb, 8))))
    good("rgb8_key", data, 4, 1, to_rgba(rgb, RGB, 8, key=(1, 2, 3)))
    deep = [[(0x101, 0x202, 0x303), (0x101, 0x202, 0x304), (0x100, 0x202, 0x303)]]
    data = png(ihdr(3, 1, 16, RGB), chunk(b"tRNS", b"\1\1\2\2\3\3"), idat(zlib.compress(filtered(deep, 16))))
    good("rgb16_key", data, 3, 1, to_rgba(deep, RGB, 16, key=(0x101, 0x202, 0x303)), False)

    palette = [((i * 37) % 256, (i * 11) % 256, 255 - i) for i in range(40)]
    plte = chunk(b"PLTE", bytes(v for entry in palette for v in entry))
    indexed = [[((x * y + x) % 40,) for x in range(21)] for y in range(13)]
    rows = idat(zlib.compress(filtered(indexed, 8)))
    good("palette", png(ihdr(21, 13, 8, PALETTE), plte, rows), 21, 13, to_rgba(indexed, PALETTE, 8, palette))
    trns = [0, 128, 7, 255, 30]
    data = png(ihdr(21, 13, 8, PALETTE), plte, chunk(b"tRNS", bytes(trns)), rows)
    good("palette_trns", data, 21, 13, to_rgba(indexed, PALETTE, 8, palette, trns))
    rows7 = idat(zlib.compress(filtered(indexed, 8, interlace=1)))
    good("palette_adam7", png(ihdr(21, 13, 8, PALETTE, interlace=1), plte, rows7), 21, 13,
         to_rgba(indexed, PALETTE, 8, palette))
    short = chunk(b"PLTE", bytes(39 * 3))
    bad("palette_index_beyond", png(ihdr(21, 13, 8, PALETTE), short, rows))
    bad("palette_missing", png(ihdr(21, 13, 8, PALETTE), rows))
    bad("palette_empty", png(ihdr(21, 13, 8, PALETTE), chunk(b"PLTE"), rows))
    bad("palette_not_thirds", png(ihdr(21, 13, 8, PALETTE), chunk(b"PLTE", bytes(121)), rows))
    bad("palette_too_long", png(ihdr(21, 13, 8, PALETTE), chunk(b"PLTE", bytes(771)), rows))
    bad("palette_trns_too_long", png(ihdr(21, 13, 8, PALETTE), plte, chunk(b"tRNS", bytes(41)), rows))
    bad("palette_trns_first", png(ihdr(21, 13, 8, PALETTE), chunk(b"tRNS", bytes(trns)), plte, rows))
    full = chunk(b"tRNS", bytes(40))
    bad("palette_shrinks_below_trns", png(ihdr(21, 13, 8, PALETTE), plte, full, short, rows))

    pixels = picture(6, 5, RGB, 8)
    stream = idat(zlib.compress(filtered(pixels, 8)))
    good("rgb8_with_palette", png(ihdr(6, 5, 8, RGB), plte, stream), 6, 5, to_rgba(pixels, RGB, 8))
    bad("rgb8_palette_not_thirds", png(ihdr(6, 5, 8, RGB), chunk(b"PLTE", bytes(4)), stream))
    bad("rgb8_trns_of_5", png(ihdr(6, 5, 8, RGB), chunk(b"tRNS", bytes(5)), stream))
    bad("grey8_trns_of_1", png(ihdr(8, 4, 8, GREY), chunk(b"tRNS", b"\0"), idat(zlib.compress(filtered(grey, 8)))))
    for colour, name in ((GREY_ALPHA, "grey_alpha"), (RGBA, "rgba")):
        stream = idat(zlib.compress(filtered(picture(3, 3, colour, 8), 8)))
        bad(f"{name}_with_trns", png(ihdr(3, 3, 8, colour), chunk(b"tRNS", bytes(2)), stream))


def headers_and_chunks():
    pixels = picture(6, 5, RGBA, 8)
    rgba = to_rgba(pixels, RGBA, 8)
    stream = zlib.compress(filtered(pixels, 8))
    head, rows = ihdr(6, 5, 8, RGBA), idat(stream)
    for depth in (1, 2, 4):
        for colour in (GREY, PALETTE):
            body = idat(zlib.compress(bytes(5 * (1 + -(-6 * depth // 8)))))
            bad(f"depth{depth}_type{colour}", png(ihdr(6, 5, depth, colour), chunk(b"PLTE", bytes(6)), body))
    deep = idat(zlib.compress(bytes(5 * 13)))
    bad("palette16", png(ihdr(6, 5, 16, PALETTE), chunk(b"PLTE", bytes(6)), deep))
    for name, fields in {"width_0": (0, 5, 8, 6), "height_0": (6, 0, 8, 6), "colour_1": (6, 5, 8, 1),
                         "colour_5": (6, 5, 8, 5), "colour_7": (6, 5, 8, 7), "depth_3": (6, 5, 3, 6),
                         "compression_1": (6, 5, 8, 6, 1), "filtering_1": (6, 5, 8, 6, 0, 1),
                         "interlace_2": (6, 5, 8, 6, 0, 0, 2)}.items():
        bad(f"ihdr_{name}", png(ihdr(*fields), rows))
    bad("ihdr_of_14", png(chunk(b"IHDR", struct.pack(">IIBBBBBB", 6, 5, 8, 6, 0, 0, 0, 0)), rows))
    bad("ihdr_twice", png(head, head, rows))
    bad("ihdr_late", png(chunk(b"tEXt", b"a\0b"), head, rows))
    bad("huge_claim", png(ihdr(30000, 30000, 8, RGBA), rows))
    bad("huge_claim_adam7", png(ihdr(30000, 30000, 8, RGBA, interlace=1), rows))
    bad("pixel_limit", png(ihdr(32768, 32768, 8, GREY), rows))
    bad("widest_claim", png(ihdr(0x7FFFFFFF, 1, 8, RGBA), rows))
    huge = png(ihdr(30000, 30000, 8, RGBA), actl(1), fctl(6, 5), rows)
    bad("huge_sparse_canvas", huge)

    text = chunk(b"tEXt", b"Comment\0hello")
    good("text_skipped", png(head, text, rows, chunk(b"tIME", bytes(7))), 6, 5, rgba)
    bad("text_crc_flip", png(head, chunk(b"tEXt", b"Comment\0hello", 1), rows))
    bad("text_crc_flip_behind", png(head, rows, chunk(b"tEXt", b"x", 1 << 31)))
    bad("idat_crc_flip", png(head, chunk(b"IDAT", stream, 0x100)))
    bad("iend_crc_flip", SIGNATURE + head + rows + chunk(b"IEND", b"", 1))
    good("private_ancillary", png(head, chunk(b"abCd", b"??"), rows), 6, 5, rgba)
    bad("unknown_critical", png(head, chunk(b"ABCD", b"??"), rows))
    good("behind_iend", png(head, rows) + b"trailing rubbish " * 3, 6, 5, rgba)
    bad("iend_with_data", SIGNATURE + head + rows + chunk(b"IEND", b"\0"))
    bad("iend_missing", SIGNATURE + head + rows)
    bad("idat_missing", png(head))
    bad("idat_only_empty", png(head, chunk(b"IDAT")))
    bad("signature_wrong", b"\x89PNG\r\n\x1a\r" + png(head, rows)[8:])
    bad("signature_only", SIGNATURE)
    bad("length_beyond_file", SIGNATURE + head + struct.pack(">I", 0xFFFFFFFF) + rows[4:])
    split = idat(stream, 7)
    good("idat_split", png(head, split), 6, 5, rgba)
    good("idat_bytewise", png(head, idat(stream, len(stream))), 6, 5, rgba)
    good("idat_with_empties", png(head, chunk(b"IDAT"), idat(stream, 2), chunk(b"IDAT")), 6, 5, rgba)
    good("idat_apart", png(head, chunk(b"IDAT", stream[:9]), text, chunk(b"IDAT", stream[9:])), 6, 5, rgba, False)


def row_data():
    pixels = picture(6, 5, RGBA, 8)
    head, data = ihdr(6, 5, 8, RGBA), filtered(pixels, 8)
    bad("data_one_short", png(head, idat(zlib.compress(data[:-1]))))
    bad("data_one_long", png(head, idat(zlib.compress(data + b"\0"))))
    bad("data_row_long", png(head, idat(zlib.compress(data + bytes(25)))))
    bad("data_empty", png(head, idat(zlib.compress(b""))))
    for row in (0, 4):
        bad(f"filter5_row{row}", png(head, idat(zlib.compress(data[:row * 25] + b"\5" + data[row * 25 + 1:]))))
    bad("filter255_adam7", png(ihdr(1, 1, 8, GREY, interlace=1), idat(zlib.compress(b"\xff\0"))))


def deflate_streams():
    pixels = picture(40, 30, RGB, 8, 5)
    rgba, data = to_rgba(pixels, RGB, 8), filtered(pixels, 8)
    head = ihdr(40, 30, 8, RGB)
    for name, level, strategy in (("stored", 0, 0), ("fixed", 9, zlib.Z_FIXED), ("rle", 9, zlib.Z_RLE),
                                  ("huffman_only", 9, zlib.Z_HUFFMAN_ONLY), ("level1", 1, 0)):
        good(f"deflate_{name}", png(head, idat(wrap(raw_deflate(data, level, strategy), data))), 40, 30, rgba)
    squeezer = zlib.compressobj(9)
    mixed = b"".join(squeezer.compress(data[i:i + 500]) + squeezer.flush(zlib.Z_FULL_FLUSH)
                     for i in range(0, len(data), 500)) + squeezer.flush()
    good("deflate_many_blocks", png(head, idat(mixed)), 40, 30, rgba)

    # One grey pixel of value 0: the two bytes 00 00.
    tiny, black = ihdr(1, 1, 8, GREY), b"\0\0\0\xff"

    def accept(name, stream):
        good("zlib_" + name, png(tiny, idat(stream)), 1, 1, black, False)

    def refuse(name, stream):
        bad("zlib_" + name, png(tiny, idat(stream)))

    plain = fixed_block([0, 0, 256])
    accept("plain", wrap(plain))
    accept("window_nibble_15", wrap(plain, header=struct.pack(">H", 0xF800 + (-0xF800) % 31)))
    refuse("method_7", wrap(plain, header=struct.pack(">H", 0x7700 + (-0x7700) % 31)))
    refuse("header_check", wrap(plain, header=b"\x78\x02"))
    refuse("dictionary", wrap(plain, header=struct.pack(">H", 0x7820 + (-0x7820) % 31)))
    refuse("adler", wrap(plain, adler_flip=1))
    refuse("extra_byte", wrap(plain, behind=b"\0"))
    refuse("nine_extra_bytes", wrap(plain, behind=bytes(9)))
    refuse("five_bytes", b"\x78\x01\0\0\1")
    refuse("six_bytes", b"\x78\x01\0\0\0\1")
    accept("padding_bits_set", wrap(bytes([plain.bytes()[0]]) + plain.bytes()[1:-1] +
                                    bytes([plain.bytes()[-1] | (0xFF << plain.count % 8) & 0xFF])))
    refuse("no_end_code", wrap(fixed_block([0, 0])))
    refuse("not_final", wrap(fixed_block([0, 0, 256], final=0)))
    empty_first = Bits().put(0, 1).put(1, 2).code(FIXED[256])
    accept("empty_block_first", wrap(empty_first.put(plain.value, plain.count)))
    refuse("block_type_3", wrap(Bits().put(1, 1).put(3, 2).put(0, 13)))
    accept("stored", wrap(b"\1\2\0\xfd\xff\0\0"))
    accept("stored_odd_bits", wrap(b"\xf9\2\0\xfd\xff\0\0"))
    accept("stored_empty_first", wrap(b"\0\0\0\xff\xff\1\2\0\xfd\xff\0\0"))
    refuse("stored_complement", wrap(b"\1\2\0\xfd\xfe\0\0"))
    refuse("stored_cut", wrap(b"\1\2\0\xfd\xff\0"))
    refuse("stored_long", wrap(b"\1\3\0\xfc\xff\0\0\0", b"\0\0\0"))
    refuse("literal_286", wrap(fixed_block([0, 286, 0, 256])))
    refuse("literal_287", wrap(fixed_block([0, 287, 0, 256])))
    refuse("distance_too_far", wrap(fixed_block([257, "00000", 256])))
    refuse("distance_30", wrap(fixed_block([0, 257, "11110", 256])))
    refuse("match_past_limit", wrap(fixed_block([0, 257, "00000", 256]), bytes(4)))
    four = ihdr(3, 1, 8, GREY)
    data = wrap(fixed_block([0, 257, "00000", 256]), bytes(4))
    good("zlib_match", png(four, idat(data)), 3, 1, black * 3, False)

    def lengths(size, **own):
        out = [0] * size
        for symbol, length in own.items():
            out[int(symbol[1:])] = length
        return out

    half = lengths(257, s0=1, s256=2)  # the code 11 is nobody's
    accept("incomplete_code", wrap(dynamic_block(half, [0], ["0", "0", "10"])))
    refuse("incomplete_code_met", wrap(dynamic_block(half, [0], ["0", "11", "0", "10"])))
    refuse("incomplete_code_last", wrap(dynamic_block(half, [0], ["0", "0", "11"])))
    matched = lengths(258, s0=1, s256=2, s257=2)
    for name, distances, tail, ok in (("one_distance", [1], ["0", "11", "0", "10"], True),
                                      ("one_distance_other_bit", [1], ["0", "11", "1", "10"], False),
                                      ("no_distance_met", [0], ["0", "11", "0", "10"], False)):
        data = png(four, idat(wrap(dynamic_block(matched, distances, tail), bytes(4))))
        good("zlib_" + name, data, 3, 1, black * 3, False) if ok else bad("zlib_" + name, data)
    refuse("no_literals", wrap(dynamic_block([0] * 257, [1], [])))
    refuse("too_many_literals", wrap(dynamic_block(lengths(257, s0=1, s1=1, s256=1), [0], ["0", "0"])))
    refuse("too_many_distances", wrap(dynamic_block(half, [1, 1, 1], ["0", "0", "10"])))
    accept("all_288_literals", wrap(dynamic_block(lengths(288, s0=1, s256=2, s287=2), [0] * 32, ["0", "0", "10"])))
    refuse("dynamic_287_met", wrap(dynamic_block(lengths(288, s0=1, s256=2, s287=2), [0], ["0", "11", "10"])))
    long_code = lengths(257, **{f"s{n}": n + 1 for n in range(14)}, s255=15, s256=15)
    code = canonical(long_code)
    accept("fifteen_bits", wrap(dynamic_block(long_code, [0], [code[0], code[0], code[256]])))
    unsent = [(18, 127, 7), (18, 116 - 11, 7)]  # 254 zeros
    repeated = [(1, 0, 0)] + unsent + [(0, 0, 0), (2, 0, 0)]
    accept("repeats", wrap(dynamic_block(half, [0], ["0", "0", "10"], False, repeated + [(0, 0, 0)])))
    accept("repeat_cut", wrap(dynamic_block(half, [0], ["0", "0", "10"], False, repeated + [(18, 127, 7)])))
    cut = wrap(dynamic_block(half, [2], ["0", "0", "10"], False, repeated + [(16, 3, 2)]))
    accept("repeat_16_cut", cut)
    refuse("repeat_of_nothing", wrap(dynamic_block(half, [0], ["0", "0", "10"], False, [(16, 0, 2)] + repeated)))
    bits = Bits().put(1, 1).put(2, 2).put(0, 5).put(0, 5).put(0, 4).put(0, 12)
    refuse("no_length_codes", wrap(bits.put(0, 64)))
    bits = Bits().put(1, 1).put(2, 2).put(0, 5).put(0, 5).put(0, 4).put(0b001001001001, 12)
    refuse("too_many_length_codes", wrap(bits.put(0, 64)))


def animations():
    width, height = 12, 10
    base = picture(width, height, RGBA, 8, 3)
    small = picture(5, 4, RGBA, 8, 4)
    third = picture(7, 9, RGBA, 8, 6)
    base_rgba, small_rgba, third_rgba = (to_rgba(p, RGBA, 8) for p in (base, small, third))
    z_base, z_small, z_third = (zlib.compress(filtered(p, 8)) for p in (base, small, third))
    head, empty = ihdr(width, height, 8, RGBA), bytes(width * height * 4)

    def squash(*layers):
        canvas = empty
        for rgba, w, x, y, blend in layers:
            canvas = lay(canvas, width, rgba, w, x, y, blend)
        return canvas

    whole = (base_rgba, width, 0, 0, 0)
    for blend, name in ((0, "source"), (1, "over")):
        for dispose in (0, 1, 2):
            data = png(head, actl(3), fctl(width, height, dispose=dispose), idat(z_base, 2),
                       fctl(5, 4, 6, 5, dispose, blend, 1), fdat(z_small, 2), fctl(7, 9, 2, 1, dispose, blend, 3),
                       fdat(z_third[:20], 4), fdat(z_third[20:], 5))
            want = squash(whole, (small_rgba, 5, 6, 5, blend), (third_rgba, 7, 2, 1, blend))
            good(f"apng_{name}_dispose{dispose}", data, width, height, want, False)
    hidden = png(head, actl(1), idat(z_base), fctl(5, 4, 7, 6, 0, 1), fdat(z_small))
    good("apng_hidden_default", hidden, width, height, squash(whole, (small_rgba, 5, 7, 6, 1)), False)
    part = png(head, actl(1), fctl(5, 4, 3, 2, 0, 1), idat(z_small))
    good("apng_first_frame_smaller", part, width, height, squash((small_rgba, 5, 3, 2, 1)), False)
    two = (fctl(width, height), idat(z_base), fctl(5, 4), fdat(z_small))
    good("apng_fewer_frames", png(head, actl(5), *two), width, height,
         squash(whole, (small_rgba, 5, 0, 0, 0)), False)
    bad("apng_more_frames", png(head, actl(1), *two))
    bad("apng_actl_0", png(head, actl(0), *two))
    bad("apng_actl_of_9", png(head, actl(2, 9), *two))
    bad("apng_actl_twice", png(head, actl(2), actl(2), *two))
    bad("apng_actl_late", png(head, idat(z_base), actl(2)))
    bad("apng_actl_alone", png(head, actl(1), idat(z_base)))
    bad("apng_fctl_without_actl", png(head, *two))
    bad("apng_fdat_without_actl", png(head, idat(z_base), fdat(z_small)))
    bad("apng_fdat_without_fctl", png(head, actl(1), idat(z_base), fdat(z_small)))
    bad("apng_fdat_of_4", png(head, actl(2), *two, fdat(b"")))
    bad("apng_frame_without_data", png(head, actl(2), fctl(width, height), idat(z_base), fctl(5, 4)))
    bad("apng_two_fctl_before_idat", png(head, actl(2), fctl(width, height), fctl(width, height), idat(z_base)))
    for name, fields in {"width_0": (0, 4), "height_0": (5, 0), "right": (5, 4, 8, 0), "below": (5, 4, 0, 7),
                         "x_wraps": (5, 4, 0xFFFFFFFE, 0), "width_wraps": (0xFFFFFFFF, 4, 6, 0),
                         "dispose_3": (5, 4, 0, 0, 3), "blend_2": (5, 4, 0, 0, 0, 2)}.items():
        bad(f"apng_fctl_{name}", png(head, actl(2), *two[:2], fctl(*fields), fdat(z_small)))
    long_fctl = fctl(5, 4, extra=b"\0")
    bad("apng_fctl_of_27", png(head, actl(2), *two[:2], long_fctl, fdat(z_small)))
    bad("apng_frame_data_short", png(head, actl(2), *two[:2], fctl(5, 5), fdat(z_small)))
    bad("apng_default_bad", png(head, actl(1), idat(z_small), fctl(5, 4), fdat(z_small)))
    bad("apng_full_frame_data_for_small", png(head, actl(1), fctl(5, 4), idat(z_base)))
    clear = [[(9, 8, 7, 0)] * 3]
    data = png(ihdr(3, 1, 8, RGBA), actl(1), fctl(3, 1, blend=1), idat(zlib.compress(filtered(clear, 8))))
    good("apng_clear_colours_kept", data, 3, 1, bytes([9, 8, 7, 0]) * 3, False)
    indexed = [[(0,), (1,)], [(1,), (0,)]]
    layer = zlib.compress(filtered(indexed, 8))
    palette = [(200, 100, 50), (10, 250, 90)]
    data = png(ihdr(2, 2, 8, PALETTE), actl(2), chunk(b"PLTE", bytes(v for e in palette for v in e)),
               chunk(b"tRNS", b"\x50\xb0"), fctl(2, 2), idat(layer), fctl(1, 1, 1, 1, 0, 1),
               fdat(zlib.compress(b"\0\1")))
    rgba = to_rgba(indexed, PALETTE, 8, palette, [0x50, 0xB0])
    good("apng_palette_over", data, 2, 2, lay(rgba, 2, bytes([10, 250, 90, 0xB0]), 1, 1, 1, 1), False)
    if Image:  # Pillow's own last frame, where nothing is disposed of, must be ours
        with Image.open(FOLDER / "apng_source_dispose0.png") as image:
            image.seek(2)
            assert image.convert("RGBA").tobytes() == squash(
                whole, (small_rgba, 5, 6, 5, 0), (third_rgba, 7, 2, 1, 0))


def made_by_tools():
    """Files that stand already are kept, so that the folder does not change with the tools' versions."""
    plain = "PNG32:", "PNG24:", "PNG8:"
    for number, form in enumerate(plain):
        for interlace in ("none", "PNG"):
            name = f"convert_{form[:-1].lower()}_{interlace.lower()}"
            path = FOLDER / (name + ".png")
            if not path.exists():
                subprocess.run(["convert", "-size", "61x47", "plasma:red-blue", "-depth", "8", "-alpha", "set",
                                "-channel", "A", "-evaluate", "multiply", "0.7", "+channel", "-seed", str(number),
                                "-colors", "200", "-strip", "-interlace", interlace, form + str(path)], check=True)
            with Image.open(path) as image:
                size = image.size
            good(name, path.read_bytes(), *size, pillow_rgba(path))
    for mode in ("L", "LA", "RGB", "RGBA", "P"):
        path = FOLDER / f"pillow_{mode.lower()}.png"
        if not path.exists():
            colours = picture(53, 31, RGBA, 8, 9)
            image = Image.frombytes("RGBA", (53, 31), to_rgba(colours, RGBA, 8))
            image.convert("RGB").convert("P").save(path) if mode == "P" else image.convert(mode).save(path)
        good(path.stem, path.read_bytes(), 53, 31, pillow_rgba(path))


def main():
    FOLDER.mkdir(parents=True, exist_ok=True)
    for make in (colour_types, keys_and_palettes, headers_and_chunks, row_data, deflate_streams, animations):
        make()
    if Image:
        made_by_tools()
    head = ["# Made by tools/make_png_inputs.py.",
            "# file OK width height crc32-of-RGBA source-of-the-sum, or: file BAD"]
    (FOLDER / "manifest.txt").write_text("\n".join(head + manifest) + "\n")


if __name__ == "__main__":
    main()
