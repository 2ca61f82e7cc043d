m = math
print(m["floor"](2.7), m["floor"](-2.1), m["ceil"](2.1), m["floor"](5))    @@ expect: 2\t-3\t3\t5
print(m["abs"](-3), m["abs"](-2.5), m["min"](3, 1.5, 2), m["max"](1, 7))   @@ expect: 3\t2.500000\t1.500000\t7
print(m["min"](1, 1.0), m["min"](1.0, 1), m["max"](2, 2.0))      @@ expect: 1\t1.000000\t2
print(m["sqrt"](16), m["sin"](0), m["cos"](0), m["log"](1), m["rad"](180)) @@ expect: 4.000000\t0.000000\t1.000000\t0.000000\t3.141593
print(pcall(m["floor"], 1, 2))      @@ expect: false\tmath['floor'](x) requires exactly 1 argument
print(m["floor"](1e5))              @@ error: Unknown token: 1e5
