@@ What a protected call leaves half-done is undone, however deep the failure was.
function fail(kind)
    if kind == "thrown"
        return 1 \ 0
    end
    error("raised")
end
function deep(kind, depth)
    local mark = depth
    for i = 1, 3
        for k, v in pairs({a = 1, b = 2})
            for item in [10, 20]
                repeat
                    local inner = item + i
                    if depth > 0
                        deep(kind, depth - 1)
                    end
                    total = inner + [1, 2, fail(kind)][1]
                until false
            end
        end
    end
end
mark = "outer"
i = "i"
k = "k"
item = "item"
inner = "inner"
total = "total"
for kind in ["thrown", "raised"]
    for depth = 0, 2
        ok, why = pcall(deep, kind, depth)
        print(ok, why, mark, i, k, item, inner, total)
    end
end
@@ expect: false\tDivision by zero\touter\ti\tk\titem\tinner\ttotal
@@ expect: false\tDivision by zero\touter\ti\tk\titem\tinner\ttotal
@@ expect: false\tDivision by zero\touter\ti\tk\titem\tinner\ttotal
@@ expect: false\traised\touter\ti\tk\titem\tinner\ttotal
@@ expect: false\traised\touter\ti\tk\titem\tinner\ttotal
@@ expect: false\traised\touter\ti\tk\titem\tinner\ttotal

@@ Protected calls inside each other, in expressions and from library functions.
function second(a, b)
    return b
end
function nested(depth)
    if depth == 0
        return fail("thrown")
    end
    local ok, why = pcall(nested, depth - 1)
    error("level " + depth + ": " + why)
end
print(pcall(nested, 3))     @@ expect: false\tlevel 3: level 2: level 1: Division by zero
function keeps(n)
    return "<" + second(pcall(fail, "thrown"), n) + ">" + [n, pcall(fail, "raised")][1]
end
print(keeps(1) + keeps(2))  @@ expect: <1>1<2>2
function order(a, b)
    pcall(fail, "thrown")
    return a < b
end
list = [3, 1, 2]
print(pcall(table["sort"], list, order), list)     @@ expect: true\t[1, 2, 3]
function manyResults()
    return 1, 2, 3
end
function nothing()
end
print(pcall(manyResults))   @@ expect: true\t1\t2\t3
print(pcall(nothing))       @@ expect: true
print(pcall(pcall, fail, "raised"))   @@ expect: true\tfalse\traised
print(pcall(5))             @@ expect: false\tAttempted to call a non-function value of type int

@@ A local of the caller is out of sight in the call and back behind it, also where a loop has hidden it meanwhile.
function seen()
    return shade
end
shade = "global"
function caller()
    local shade = "local"
    local found = seen()
    for shade = 1, 2
        found = found + " " + shade + seen()
        local shade = "inner"
        found = found + " " + shade + seen()
    end
    pcall(fail, "thrown")
    return found + " " + shade
end
print(caller())     @@ expect: global local1 inner1 local2 inner2 local

@@ Endless recursion through protected calls fails in the innermost one; all around it go on.
function guarded(n)
    local ok, why = pcall(guarded, n + 1)
    if not ok and first == ""
        first = why
        deepest = n
    end
end
first = ""
guarded(1)
print(first, deepest > 50)              @@ expect: Stack overflow: calls or expressions are nested too deeply\ttrue
