@@ `not` is the nil value in front of a boundary and an operator in front of an operand.
function f(x, y)
    return typeOf(x) + typeOf(y)
end
x = not
print(x, not x, not (x), not not 1, not not)    @@ expect: not\ttrue\ttrue\ttrue\ttrue
print(f(not, 1), {not, 1}[2], not == not)       @@ expect: notnumber\t1\ttrue
print(pcall(load("return not -1")))             @@ expect: false\tUnsupported operation '-' between types
print(undefinedName, undefinedName == not)      @@ expect: not\ttrue
print(undefinedName[1])                         @@ error: Indexing requires an array, table, or string
