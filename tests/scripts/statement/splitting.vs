a = 1; b = 2; print(a, b)               @@ expect: 1\t2
print("a;b", 'it''s' == not)            @@ error: Expected ',' or ')' after function argument
