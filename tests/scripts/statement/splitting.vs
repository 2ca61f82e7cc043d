a = 1; b = 2; print(a, b)               @@ expect: 1\t2
@@ Inside brackets a semicolon ends nothing, so it is a token that nothing expects.
for i, case in ipairs([["t = [1; 2]", "array literal"], ["t = {1; 2}", "table literal"], ["t = (1; 2)", "closing parenthesis"]])
    ok, message = pcall(load(case[1]))
    print(ok, message["find"](case[2], 1, true) != not)
end
@@ expect: false\ttrue
@@ expect: false\ttrue
@@ expect: false\ttrue
print("a;b", 'it''s' == not)            @@ error: Expected ',' or ')' after function argument
