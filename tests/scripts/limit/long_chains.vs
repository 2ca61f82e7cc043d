@@ An expression is as long as its source: chains of operators, keys and calls hold no more by being longer.
function f()
    return f
end
x = 1
a = []
push(a, a)
for length in [600, 100000]
    print(load("return x" + string["rep"](" + x", length))())
    print(typeOf(load("return a" + string["rep"]("[1]", length))()))
    print(typeOf(load("return f" + string["rep"]("()", length))()))
    print(load("if x" + string["rep"](" and x", length) + "\n    return \"true\"\nend")())
end
a[1] = not
@@ expect: 601
@@ expect: table
@@ expect: function
@@ expect: true
@@ expect: 100001
@@ expect: table
@@ expect: function
@@ expect: true
