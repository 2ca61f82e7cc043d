function f( a,b )
@@ c
if a>b; t={x=1,
["y"]:-2}   @@ d
      @@ e
else
end
end