n = 10
n += 5
n -= 1
n *= 2
print(n)            @@ expect: 28
n \= 5
n ^= 3
n %= 100
n /= 5
print(n)            @@ expect: 5.000000
t = {k = {1, 2}}
t["k"][2] += 40
print(t)            @@ expect: {k: [1, 42]}
s = "a"
r = s
s += 1
s += not
print(s, r)         @@ expect: a1not\ta
print(pcall(load("u['x'] += 1")))
@@ expect: false\tVesperScript error: Variable not found: u
@@ expect:   at compound_assignment.vs:1, near token 'u'
@@ expect:   u['x'] += 1
@@ expect:   ^
@@ expect:   hint: check spelling, operators, parentheses, and quote matching
@@ expect: 
@@ direct: no, the report names the chunk by the path of the running file
missing += 1        @@ error: Variable not found: missing
