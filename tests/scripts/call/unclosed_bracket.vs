print("before")     @@ expect: before
x = f(1, 2          @@ error: Expected ',' or ')' after function argument
