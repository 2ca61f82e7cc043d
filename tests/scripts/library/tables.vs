a = [3, 1, 2]
table["sort"](a)
print(a, table["concat"](a, "-"), table["concat"](a, ",", 2, 3))    @@ expect: [1, 2, 3]\t1-2-3\t2,3
function down(x, y)
    return x > y
end
table["sort"](a, down)
print(a)                            @@ expect: [3, 2, 1]
table["insert"](a, 4)
table["insert"](a, 1, "first")
print(a)                            @@ expect: [first, 3, 2, 1, 4]
print(table["remove"](a, 1), table["remove"](a), a)    @@ expect: first\t4\t[3, 2, 1]
t = {}
table["insert"](t, "x")
table["insert"](t, "y")
t["named"] = 1
table["insert"](t, 1, "w")
print(t)                            @@ expect: {1: w, 2: x, 3: y, named: 1}
print(table["remove"](t, 2), t)     @@ expect: x\t{1: w, 2: y, named: 1}
print(table["remove"]([]))          @@ expect: not
function silly(x, y)
    return true
end
table["sort"](a, silly)
print(#a)                           @@ expect: 3
print(pcall(table["sort"], 5))      @@ expect: false\ttable['sort'](table[, comp]) requires an array or table
table["insert"](a, 9, 1)            @@ error: table['insert'](table[, pos], value): position out of bounds
