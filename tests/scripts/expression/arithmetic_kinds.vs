@@ Int stays Int and wraps, Float spreads, `/` is always Float.
print(2147483647 + 1, -2147483647 - 2, 65536 * 65536)  @@ expect: -2147483648\t2147483647\t0
print(4 / 2, 1 + 1.0, 3 * 0.5, true + true)            @@ expect: 2.000000\t2.000000\t1.500000\t2
print(2 ^ 10, 2 ^ 31, 2 ^ -1, 0 ^ 0, 2.0 ^ 2)          @@ expect: 1024\t2147483648.000000\t0.500000\t1\t4.000000
print(7 % 3, -7 % 3, 7.5 % 2, 7 % -3)                  @@ expect: 1\t-1\t1.500000\t1
print(99999999999)                                     @@ expect: 99999997952.000000
print(-true, +"x", -2.5, #"abc", #{1, 2})              @@ expect: -1\tx\t-2.500000\t3\t2
m = -2147483647 - 1
print(m \ -1, m % -1, math["abs"](m))                  @@ expect: -2147483648\t0\t-2147483648
print("" + not + true + 1.5 + {1})                     @@ expect: nottrue1.500000[1]
print(pcall(load("return 1 + not")))    @@ expect: false\tUnsupported operation '+' between types
print(pcall(load("return 'a' * 2")))    @@ expect: false\tUnsupported operation '*' between types
print(pcall(load("return {} ^ 2")))     @@ expect: false\tUnsupported operation '^' between types
print(pcall(load("return 1.5 % 0")))    @@ expect: false\tDivision by zero
print(pcall(load("return 10 ^ 400")))   @@ expect: false\tInvalid exponentiation result
print(2147483647 ^ 1)                    @@ expect: 2147483647
print(.5, 5., -.5)                      @@ expect: 0.500000\t5.000000\t-0.500000
for each, text in pairs([".", "1.2.3"])
    ok, message = pcall(load("return " + text))
    print(ok, message["find"]("Unknown token: " + text, 1, true) != not)
end
@@ expect: false\ttrue
@@ expect: false\ttrue
print(-"x")                             @@ error: Unary '-' requires a numeric value
