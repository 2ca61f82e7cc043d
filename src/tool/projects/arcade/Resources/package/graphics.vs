@@ Runs before the game: its sizes, its colours, and how things are drawn. Everything is drawn by hand into
@@ `screen`, which the window shows enlarged.

WIDE = 320
HIGH = 180
screen = Plush["createImage"](WIDE, HIGH, 0, 0, 0, 255)

@@ Digits in three columns and five rows.
DIGITS = ["####.##.##.####", ".#..#..#..#..#.", "###..#####..###", "###..####..####", "#.##.####..#..#", "####..###..####", "####..####.####", "###..#..#..#..#", "####.#####.####", "####.####..####"]

function box(x, y, wide, high, colour)
    Plush["fillRect"](screen, x, y, wide, high, colour[1], colour[2], colour[3], 255)
end

function drawDigit(digit, left, top, colour)
    local rows = DIGITS[digit + 1]
    for i = 1, #rows
        if rows[i] == "#"
            box(left + (i - 1) % 3 * 3, top + (i - 1) \ 3 * 3, 3, 3, colour)
        end
    end
end

function drawNumber(number, left, top, colour)
    if number > 9
        drawNumber(number \ 10, left - 12, top, colour)
    end
    drawDigit(number % 10, left, top, colour)
end
