x = "a
   b"+ name #2  
	y = (1