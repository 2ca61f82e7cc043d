" Says which tokens of a list Vim highlights as something else. A line of $TOKENS: path, line, column in bytes, kind.
let s:kinds = {
      \ '': ['word', 'sign'], 'vesperName': ['word'], 'vesperFunction': ['word'], 'vesperSign': ['sign'],
      \ 'vesperNumber': ['number'], 'vesperPointer': ['number'], 'vesperBoolean': ['boolean'],
      \ 'vesperString': ['string'], 'vesperEscape': ['string'],
      \ 'vesperComment': ['comment'], 'vesperTodo': ['comment'],
      \ 'vesperConditional': ['keyword'], 'vesperRepeat': ['keyword'], 'vesperStatement': ['keyword'],
      \ 'vesperStorage': ['keyword'], 'vesperWordOperator': ['keyword'],
      \ }
let s:said = []
let s:path = ''
for s:token in readfile($TOKENS)
  let [s:file, s:line, s:column, s:kind] = split(s:token, "\t")
  if s:file !=# s:path
    let s:path = s:file
    execute 'edit!' fnameescape(s:path)
    if &filetype !=# 'vesper'
      call add(s:said, s:path . ' is of the type ' . &filetype)
    endif
  endif
  let s:group = synIDattr(synID(str2nr(s:line), str2nr(s:column), 0), 'name')
  if index(get(s:kinds, s:group, []), s:kind) < 0
    call add(s:said, s:path . ':' . s:line . ':' . s:column . ' ' . s:kind . ' is ' . s:group)
  endif
endfor
call writefile(s:said, $ANSWER)
qall!
