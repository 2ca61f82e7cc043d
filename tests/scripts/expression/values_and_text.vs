@@ What each kind prints as, and what copies share.
print(not, 5, 1.5, "s", true, flase, $ff)         @@ expect: not\t5\t1.500000\ts\ttrue\tfalse\t$FF
print({1, "two", {3}}, {b = 1, a = "x"}, {}, [])  @@ expect: [1, two, [3]]\t{a: x, b: 1}\t{}\t[]
print(print)                                      @@ expect: [function]
a = {1}
b = a
b[1] = 9
print(a[1])             @@ expect: 9
s = "abc"
t = s
t[2] = "X"
print(s, t)             @@ expect: abc\taXc
t += t
print(t, s)             @@ expect: aXcaXc\tabc
function same(a, b)
    return a == b
end
print(1 == 1.0, true == 1, false == 0, "1" == 1, not == not)   @@ expect: true\ttrue\ttrue\tfalse\ttrue
print({1} == {1}, same(a, b), a != b)                          @@ expect: false\ttrue\tfalse
print(0 and 1, "" and 2, {} and 3, false or 4)                 @@ expect: 1\t2\t3\t4
