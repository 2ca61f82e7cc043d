autocmd BufRead,BufNewFile *.vs set filetype=vesper
