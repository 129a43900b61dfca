#!/usr/bin/env python3
"""Draws the icons and the cursor of the managers into this folder.

The pictures are kept in the tree; run this only to change them. Every size is drawn for itself,
eight times as large, and averaged down.
"""

import math
from pathlib import Path

from PIL import Image, ImageDraw

HERE = Path(__file__).parent
SIZES = (16, 32, 48)
SCALE = 8

WHITE = (255, 255, 255, 255)
INK = (31, 41, 55, 255)
MUTED = (107, 114, 128, 255)
TILE = (21, 67, 116, 255)
CELLS = [  # a coherence matrix: strong along the diagonal
    [(178, 24, 43, 255), (244, 165, 130, 255), (209, 229, 240, 255)],
    [(244, 165, 130, 255), (178, 24, 43, 255), (146, 197, 222, 255)],
    [(209, 229, 240, 255), (146, 197, 222, 255), (33, 102, 172, 255)],
]


def canvas(size: int) -> tuple[Image.Image, ImageDraw.ImageDraw, float]:
    # Image lists of 16-bit colour know no transparency, so the ground is the list's.
    image = Image.new("RGBA", (size * SCALE, size * SCALE), WHITE)
    return image, ImageDraw.Draw(image), size * SCALE / 16


def matrix(draw: ImageDraw.ImageDraw, unit: float, cells, frame) -> None:
    for row in range(3):
        for column in range(3):
            left, top = 2 + 4 * column, 2 + 4 * row
            draw.rectangle(
                [left * unit, top * unit, (left + 4) * unit - 1, (top + 4) * unit - 1],
                fill=cells[row][column],
            )
    draw.rectangle(
        [1 * unit, 1 * unit, 15 * unit - 1, 15 * unit - 1], outline=frame, width=round(unit)
    )


def shown(size: int) -> Image.Image:
    image, draw, unit = canvas(size)
    matrix(draw, unit, CELLS, INK)
    return image.resize((size, size), Image.BOX)


def grey(colour):
    """The colour's brightness, washed out."""
    level = round(sum(colour[:3]) / 3 * 0.35 + 155)
    return (level, level, level, 255)


def hidden(size: int) -> Image.Image:
    image, draw, unit = canvas(size)
    matrix(draw, unit, [[grey(cell) for cell in row] for row in CELLS], MUTED)
    stroke = [2.5 * unit, 13.5 * unit, 13.5 * unit, 2.5 * unit]
    draw.line(stroke, fill=WHITE, width=round(4.4 * unit))
    draw.line(stroke, fill=MUTED, width=round(2.2 * unit))
    return image.resize((size, size), Image.BOX)


def manager(size: int) -> Image.Image:
    """A wave over the cells of a matrix."""
    image = Image.new("RGBA", (size * SCALE, size * SCALE), (0, 0, 0, 0))
    draw = ImageDraw.Draw(image)
    unit = size * SCALE / 16
    draw.rounded_rectangle([0, 0, 16 * unit - 1, 16 * unit - 1], radius=2 * unit, fill=TILE)
    points = []
    for step in range(181):
        x = 2 + 12 * step / 180
        points.append((x * unit, (5 - 2.3 * math.sin((x - 2) / 12 * 4 * math.pi)) * unit))
    draw.line(points, fill=WHITE, width=round(1.5 * unit), joint="curve")
    for column, colour in enumerate((CELLS[0][0], CELLS[0][1], CELLS[1][2])):
        left = 2 + 4 * column
        draw.rectangle(
            [left * unit, 10 * unit, (left + 4) * unit - 1, 14 * unit - 1], fill=colour
        )
    return image.resize((size, size), Image.BOX)


def splitter() -> Image.Image:
    """A bar between two arrows, in black with a white rim."""
    image = Image.new("RGBA", (32, 32), (0, 0, 0, 0))
    draw = ImageDraw.Draw(image)
    shapes = [
        [(14, 8), (14, 23)],
        [(17, 8), (17, 23)],
    ]
    for begin, end in shapes:
        draw.line([begin, end], fill=(0, 0, 0, 255), width=1)
    for step in range(5):  # arrow heads
        draw.line([(6 + step, 15 - step), (6 + step, 16 + step)], fill=(0, 0, 0, 255))
        draw.line([(25 - step, 15 - step), (25 - step, 16 + step)], fill=(0, 0, 0, 255))
    draw.rectangle([10, 15, 12, 16], fill=(0, 0, 0, 255))
    draw.rectangle([19, 15, 21, 16], fill=(0, 0, 0, 255))
    rim = image.copy()
    black = image.getchannel("A")
    for dx in (-1, 0, 1):
        for dy in (-1, 0, 1):
            moved = Image.new("L", image.size, 0)
            moved.paste(black, (dx, dy))
            rim.paste((255, 255, 255, 255), (0, 0), moved)
    rim.paste(image, (0, 0), black)
    return rim


def bitmap(image: Image.Image) -> bytes:
    """The image as it lies in an icon file: header, rows from below as BGRA, then the mask."""
    width, height = image.size
    header = b"".join(
        value.to_bytes(size, "little")
        for value, size in [
            (40, 4), (width, 4), (2 * height, 4), (1, 2), (32, 2), (0, 4), (0, 4), (0, 4), (0, 4),
            (0, 4), (0, 4),
        ]
    )
    pixels = image.load()
    colours = bytearray()
    mask = bytearray()
    for y in reversed(range(height)):
        bits = 0
        for x in range(width):
            r, g, b, a = pixels[x, y]
            colours += bytes((b, g, r, a))
            bits = bits << 1 | (a < 128)
        stride = (width + 31) // 32 * 32
        mask += (bits << stride - width).to_bytes(stride // 8, "big")
    return header + bytes(colours) + bytes(mask)


def write(path: Path, images: list[Image.Image], kind: int, hotspot: tuple[int, int]) -> None:
    """kind 1: an icon, whose entries carry planes and depth; 2: a cursor with a hot spot."""
    blocks = [bitmap(image) for image in images]
    offset = 6 + 16 * len(images)
    file = (0).to_bytes(2, "little") + kind.to_bytes(2, "little")
    file += len(images).to_bytes(2, "little")
    fields = (1, 32) if kind == 1 else hotspot
    for image, block in zip(images, blocks):
        file += bytes((image.width, image.height, 0, 0))
        file += fields[0].to_bytes(2, "little") + fields[1].to_bytes(2, "little")
        file += len(block).to_bytes(4, "little") + offset.to_bytes(4, "little")
        offset += len(block)
    path.write_bytes(file + b"".join(blocks))


def main() -> None:
    for name, draw in [
        ("dataset_shown", shown),
        ("dataset_hidden", hidden),
        ("waveform_manager", manager),
    ]:
        write(HERE / f"{name}.ico", [draw(size) for size in SIZES], 1, (0, 0))
    write(HERE / "splitter.cur", [splitter()], 2, (15, 15))


if __name__ == "__main__":
    main()
