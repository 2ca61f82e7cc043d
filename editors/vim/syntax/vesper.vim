" VesperScript

if exists("b:current_syntax")
  finish
endif
syntax case match
syntax iskeyword @,48-57,_,$,.,#
" Strings go on over lines.
syntax sync fromstart

syntax keyword vesperConditional if elseif else
syntax keyword vesperRepeat while repeat until for in
syntax keyword vesperStatement end break return nest
syntax keyword vesperStatement function nextgroup=vesperFunction skipwhite
syntax keyword vesperStorage local native external decay
syntax keyword vesperWordOperator and or not
" All of these are read as true and false.
syntax keyword vesperBoolean true ture tre tue false flase fasle flse

syntax match vesperSign "[-+*/\\%^<>=!#~&|]"
" A name with the scope it is looked for in: name#2
syntax match vesperName "\<[A-Za-z_$][A-Za-z0-9_$]*\%(#[0-9]\+\)\=\>"
syntax match vesperFunction "[A-Za-z_$][A-Za-z0-9_$]*" contained
syntax match vesperNumber "\<\%(\d\+\.\=\d*\|\.\d\+\)\>"
syntax match vesperNumber "\<\d\+\.\%(\k\)\@!"
syntax match vesperPointer "\<\$\x\+\>"
syntax match vesperEscape "\\." contained
syntax region vesperString start=+"+ skip=+\\.+ end=+"+ contains=vesperEscape
syntax region vesperString start=+'+ skip=+\\.+ end=+'+ contains=vesperEscape
syntax keyword vesperTodo TODO FIXME contained
syntax match vesperComment "@@.*$" contains=vesperTodo

highlight default link vesperConditional Conditional
highlight default link vesperRepeat Repeat
highlight default link vesperStatement Statement
highlight default link vesperStorage StorageClass
highlight default link vesperWordOperator Operator
highlight default link vesperSign Operator
highlight default link vesperBoolean Boolean
highlight default link vesperFunction Function
highlight default link vesperNumber Number
highlight default link vesperPointer Number
highlight default link vesperString String
highlight default link vesperEscape SpecialChar
highlight default link vesperComment Comment
highlight default link vesperTodo Todo

let b:current_syntax = "vesper"
