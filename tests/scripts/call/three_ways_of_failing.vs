@@ direct: no, the reports name the file
function soft()
    error("soft")
    print("never")
end
function hard()
    return 1 \ 0
end
print(pcall(soft))              @@ expect: false\tsoft
print(pcall(hard))              @@ expect: false\tDivision by zero
print(pcall(load("x = = 1")))
@@ expect: false\tVesperScript error: Unknown token: =
@@ expect:   at three_ways_of_failing.vs:1, near token '='
@@ expect:   x = = 1
@@ expect:     ^
@@ expect:   hint: check spelling, operators, parentheses, and quote matching
@@ expect: 
touched = 0
function touch()
    touched += 1
    return 1
end
function halfway()
    return soft() + touch()
end
print(pcall(halfway), touched)  @@ expect: false\tsoft\t0
@@ A long statement is quoted around its fault, and the mark stands below it.
ok, message = pcall(load("x = '" + string["rep"]("a", 6000) + "' ?"))
first = message["find"]("\n", 1, true)
second = message["find"]("\n", first + 1, true)
quoted = message["find"]("' ?", second, true)
third = message["find"]("\n", quoted, true)
mark = message["find"]("^", third, true)
print(#message < 9000, quoted + 2 - second == mark - third)     @@ expect: true\ttrue
print(pcall(not))               @@ expect: false\tAttempted to call a non-function value of type not
function nested()
    local ok, why = pcall(soft)
    print("inner", ok, why)     @@ expect: inner\tfalse\tsoft
    return "outer"
end
print(pcall(nested))            @@ expect: true\touter
function first()
    for i = 1, 10
        while true
            x = {soft(), error("second")}[1] + soft()
        end
    end
end
print(pcall(first))             @@ expect: false\tsoft
print(pcall(error))             @@ expect: false\terror
print(pcall(assert, false, "why"), pcall(assert, 1))    @@ expect: false\twhy\ttrue\t1
print(pcall(print, "p"))        @@ expect: p
@@                              @@ expect: true
sorted = {3, 1, 2}
print(pcall(table["sort"], sorted, soft), sorted)       @@ expect: false\tsoft\t[3, 1, 2]
error("the end")                @@ error: the end
