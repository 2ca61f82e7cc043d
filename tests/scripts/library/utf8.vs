s = "aé€😀"
print(utf8["len"](s), #s, utf8["offset"](s, 3), utf8["offset"](s, -1), utf8["offset"](s, 9))  @@ expect: 4\t10\t4\t7\tnot
bad, at = utf8["len"]("a" + string["char"](255))
print(bad, at)                      @@ expect: not\t2
print(pcall(utf8["len"], 5))        @@ expect: false\tutf8['len'](s[, i[, j]]) requires a string
