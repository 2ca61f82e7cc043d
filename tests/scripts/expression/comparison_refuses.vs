print("a" < "b", "a" < "ab", "Z" < "a", 1 < 1.5, true > false)  @@ expect: true\ttrue\ttrue\ttrue\ttrue
print(pcall(load("return 1 < 'x'")))        @@ expect: false\tCannot compare int with string
print(pcall(load("return {} < {}")))        @@ expect: false\tCannot compare table with table
print("a" < 1)                              @@ error: Cannot compare string with int
