@@ A keyed assignment makes what is missing: an array for a position, a table for any other key.
a[1] = 5
b["k"] = 6
c[2]["x"][1] = 7
print(a, b, c)                  @@ expect: [5]\t{k: 6}\t[not, {x: [7]}]
a = {1, 2}
other = a
a["x"] = 1
print(a, other)                 @@ expect: {1: 1, 2: 2, x: 1}\t[1, 2]
a = {1, 2}
a[5] = 1
print(a, #a)                    @@ expect: [1, 2, not, not, 1]\t5
a[0] = "zero"
print(typeOf(a), a[0], a[5])    @@ expect: table\tzero\t1
d = not
d["q"] = 1
print(d)                        @@ expect: {q: 1}
n = {v = {1}}
n["v"]["y"] = 2
print(n)                        @@ expect: {v: {1: 1, y: 2}}
e = [1]
e[100000000] = 1                @@ error: Array index is too large
