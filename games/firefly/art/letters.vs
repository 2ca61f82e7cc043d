@@ A face of five by seven dots, sixteen letters a row in cells of six by eight. Each letter is seven rows of
@@ two hexadecimal digits, the leftmost dot worth 16.

letterOrder = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/.!-"
letterRows = {
    A: "0e11111f111111", B: "1e11111e11111e", C: "0e11101010110e", D: "1e11111111111e", E: "1f10101e10101f",
    F: "1f10101e101010", G: "0e11101713110f", H: "1111111f111111", I: "0e04040404040e", J: "0702020202120c",
    K: "11121418141211", L: "1010101010101f", M: "111b1515111111", N: "11191915131311", O: "0e11111111110e",
    P: "1e11111e101010", Q: "0e11111115120d", R: "1e11111e141211", S: "0f10100e01011e", T: "1f040404040404",
    U: "1111111111110e", V: "11111111110a04", W: "1111111515150a", X: "11110a040a1111", Y: "11110a04040404",
    Z: "1f01020408101f", "0": "0e11131519110e", "1": "040c040404040e", "2": "0e11010204081f", "3": "1e01010e01011e",
    "4": "02060a121f0202", "5": "1f10101e01011e", "6": "0608101e11110e", "7": "1f010202040404", "8": "0e11110e11110e",
    "9": "0e11110f01020c", "/": "01010204081010", ".": "00000000000c0c", "!": "04040404040004", "-": "0000001f000000",
}

function saveLetters(name)
    local image = Plush["createImage"](96, 24, 0, 0, 0, 0)
    for i = 1, #letterOrder
        local dots = letterRows[letterOrder[i]]
        for row = 0, 6
            local bits = toNumber(string["sub"](dots, row * 2 + 1, row * 2 + 2), 16)
            for column = 4, 0, -1
                if bits % 2 == 1
                    Plush["setPixel"](image, (i - 1) % 16 * 6 + column, (i - 1) \ 16 * 8 + row, 255, 255, 255, 255)
                end
                bits = bits \ 2
            end
        end
    end
    Plush["saveImage"](folder + "/" + name, image)
end
