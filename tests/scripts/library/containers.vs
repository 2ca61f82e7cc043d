a = array()
push(a, 1)
push(a, 2)
push(a, 3)
print(pop(a), a, len(a), contains(a, 2), contains(a, 9))    @@ expect: 3\t[1, 2]\t2\ttrue\tfalse
t = {one = 1, [2] = "two", [10] = "ten"}
print(keys(t), values(t), contains(t, 2), contains(t, "two"))   @@ expect: [10, 2, one]\t[ten, two, 1]\ttrue\tfalse
print(erase(t, 2), erase(t, 2), keys(t))                        @@ expect: true\tfalse\t[10, one]
print(get(t, "no"), get(t, "no", "default"), get(a, 1))         @@ expect: not\tdefault\t1
print(set([1], 2, 5), set("abc", 1, "X"))                       @@ expect: [1, 5]\tXbc
n = {}
n[1] = 1
n[2] = 2
n[3] = 3
erase(n, 2)
print(#n, n)                    @@ expect: 1\t{1: 1, 3: 3}
n[2] = "back"
print(#n)                       @@ expect: 3
k, v = next(t)
print(k, v)                     @@ expect: 10\tten
k, v = next(t, k)
print(k, v, next(t, k))         @@ expect: one\t1\tnot
print(pairs({b = 2}), ipairs([5]))      @@ expect: [[b, 2]]\t[[1, 5]]
k, v = next([7, 8], 1)
print(k, v, next([7, 8]), next([7, 8], 2))              @@ expect: 2\t8\t1\t7\tnot
print(erase([5], 2), erase([5], 0), erase([5], 1))      @@ expect: false\tfalse\ttrue
clear(t)
print(t, #t)                    @@ expect: {}\t0
print(pcall(pop, a), pcall(pop, a))     @@ expect: true\t2\ttrue\t1
print(pcall(pop, a))            @@ expect: false\tpop(array): array is empty
print(pcall(push, t, 1))        @@ expect: false\tpush(array, value): first argument must be an array
print(pcall(keys, a))           @@ expect: false\tkeys(table) requires exactly 1 table argument
print(len(5))                   @@ error: len(x) expects an array, table, or string
