@@ What an expression has worked out lasts while the rest of it calls, however that ends.
function give(x)
    return x
end
function twice(x)
    return give(x) + give(x)
end
print(give("a") + give("b") + (give("c") + twice("d")))            @@ expect: abcdd
print([give(1) + give(2), give(3) * (give(4) - give(5))][2])       @@ expect: -3
print(give(give(give(2) + 1) - give(1)), give({k = give("v")})["k"])  @@ expect: 2\tv
print(give("x") < give("y") and give("x") == give("x"))            @@ expect: true
print(#(give("ab") + give("cde")), -give(2) - give(-3), !(give(1) > give(2)))  @@ expect: 5\t1\ttrue

@@ What is called is settled before its arguments run, and so is a text whose method it is.
t = {m = give}
function other(x)
    return "other"
end
function change(x)
    t["m"] = other
    s = "changed"
    give = other
    return x
end
s = "kept"
kept = give
print(t["m"](change("first")))      @@ expect: first
print(t["m"](change("second")))     @@ expect: other
give = kept
print(give(change("third")))        @@ expect: third
s = "kept"
function string["with"](text, more)
    return text + " " + more
end
print(s["with"](change("fourth")))  @@ expect: kept fourth
give = kept
t["m"] = kept

@@ A failure in the midst leaves nothing behind.
function fails(x)
    return x + 1 \ 0
end
function soft(x)
    error("soft " + x)
    return "not reached"
end
function breaksOff(a)
    return give("long " + a) + fails(give(2))
end
function goesOn(a)
    return give("long " + a) + soft(give("text"))
end
for round = 1, 3
    ok, why = pcall(breaksOff, "text")
    print(give(round) + ": " + why, pcall(goesOn, round))
end
@@ expect: 1: Division by zero\tfalse\tsoft text
@@ expect: 2: Division by zero\tfalse\tsoft text
@@ expect: 3: Division by zero\tfalse\tsoft text
