t = {1, x = 2, 3}
print(t, typeOf(t), #t)                 @@ expect: {1: 1, 2: 3, x: 2}\ttable\t2
t = {1.50: "a", "q r": 2, true = 3, [1 + 1] = 4, [2.5]: 5,}
print(t)                                @@ expect: {1.50: a, 2: 4, 2.500000: 5, q r: 2, true: 3}
print({a = 1, a = 2}["a"], {1, 2, [2]: 9})      @@ expect: 2\t{1: 1, 2: 9}
print([1, [2, 3]][2][1], [not][1])      @@ expect: 2\tnot
long = {
    first = 1,      @@ a comment inside
    second = "a;b",
}
print(long["second"])                   @@ expect: a;b
@@ direct: no, the report names the chunk by the path of the running file
print(pcall(load("return {[1]}")))
@@ expect: false\tVesperScript error: Expected ':' after table key
@@ expect:   at constructors.vs:1, near token '}'
@@ expect:   return {[1]}
@@ expect:              ^
@@ expect:   hint: check spelling, operators, parentheses, and quote matching
@@ expect: 
print({a#1: 3, b#0 = 4}["a#1"], {c#2: 1})    @@ expect: 3\t{c#2: 1}
print({1 2})                            @@ error: Expected ',' or '}' in table literal
