print("abc"[2], "abc"[4], "abc"[0], {1, 2}[3], [5][1.0], [5]["x"])    @@ expect: b\tnot\tnot\tnot\t5\tnot
t = {}
t[3] = "three"
print(t["3"], t[3.0], typeOf(t))        @@ expect: three\tnot\ttable
t[1.5] = "x"
t[true] = "y"
print(t["1.500000"], t["true"])         @@ expect: x\ty
s = "hi"
print(s["upper"](), s["rep"](3, "-"), s["nosuch"])   @@ expect: HI\thi-hi-hi\tnot
print(pcall(load("return 'a'[1.5]")))   @@ expect: false\tString index must be an int or string method name
print(pcall(load("return ({})[{}]")))   @@ expect: false\tTable key must be string, number, or bool
print(5[1])                             @@ error: Expected ',' or ')' after function argument
