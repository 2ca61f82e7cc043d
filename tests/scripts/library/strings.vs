g = string
print(g["upper"]("aBc"), g["lower"]("aBc"), g["len"]("abc"))            @@ expect: ABC\tabc\t3
print(g["sub"]("hello", 2, 4), g["sub"]("hello", -3), g["sub"]("hello", 0, 99), g["sub"]("hello", 4, 2) == "")   @@ expect: ell\tllo\thello\ttrue
print(g["byte"]("AB", 1, 2), g["byte"]("A", 5), g["char"](72, 105))     @@ expect: 65\t66\tnot\tHi
print(g["rep"]("ab", 3, ","), g["rep"]("x", 0) == "")                   @@ expect: ab,ab,ab\ttrue
print(g["find"]("abc", "b"), g["find"]("abc", "b", -5), g["find"]("a.c", ".", 1, true))   @@ expect: 2\t2\t2\t2\t2\t2
print(g["find"]("abc", "(b)(x?)"), g["find"]("abc", "z"))               @@ expect: 2\t2\tb\t\tnot
print(g["match"]("key=val", "(%w+)=(%w+)"), g["match"]("a12b", "%d+"), g["match"]("x", "%d"))   @@ expect: key\tval\t12\tnot
print(g["gmatch"]("a1b2", "%d"), g["gmatch"]("a=1,b=2", "(%w)=(%w)"))   @@ expect: [1, 2]\t[[a, 1], [b, 2]]
print(g["gsub"]("abc", "/B/i", "x"), g["gsub"]("a\nb", "/a.b/m", "z"), g["gsub"]("aXb", "re:[A-Z]", "-"))   @@ expect: axc\tz\ta-b
print(g["gsub"]("abc", "b", "[\\0]"), g["gsub"]("abc", "b", "%0"))      @@ expect: a[b]c\ta%0c
print(g["gsub"]("ab", "(a)(b)", "\\2\\1"), g["gsub"]("xay", "a", "<\\`|\\'>"))   @@ expect: ba\tx<x|y>y
print(g["gsub"]("cat", "%a", {c = 1, a = 2, t = 3}), gsub("aaa", "a", "b"))      @@ expect: 123\tbbb
print(g["gsub"]("a^b c", "[^%s]", "_"))                                 @@ expect: a_b_c
print(g["gsub"]("one two", "%s", "%%%1"))                               @@ expect: one%%%1two
print(pcall(g["gsub"], "abc", "/B/q", "x"))     @@ expect: false\tgsub: unsupported regex flag 'q' (supported: i, m)
print(pcall(g["gsub"], "xy", "x", {}))          @@ expect: false\tgsub replacement table missing key: x
ok, why = pcall(g["gsub"], "a-b", "-", "x")
print(ok, g["sub"](why, 1, 32))                 @@ expect: false\tgsub: invalid regex pattern '-':
print(pcall(g["rep"], "x", 1000000000))         @@ expect: false\tstring['rep'](s, n[, sep]): the result is too large
print(pcall(g["upper"], 5))                     @@ expect: false\tstring['upper'](s) requires exactly 1 string argument
g["len"](5)                                     @@ error: string['len'](s) expects a string
