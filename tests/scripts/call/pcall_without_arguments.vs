print(1)        @@ expect: 1
pcall()         @@ error: pcall requires a callable value
