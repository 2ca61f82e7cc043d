native n = 1
function sees()
    return n
end
print(n, n#2, sees(), n#1)      @@ expect: 1\t1\t1\tnot
if true
    native n = 2
    print(n)                    @@ expect: 2
end
print(n, sees())                @@ expect: 1\t1
native function nf()
    return "native"
end
print(nf(), nf#1)               @@ expect: native\tnot
chunk = load("external e = 1; seenInside = e; seenExplicit = e#0")
chunk()
print(seenInside, seenExplicit, e)      @@ expect: not\t1\t1
