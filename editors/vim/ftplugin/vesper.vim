if exists("b:did_ftplugin")
  finish
endif
let b:did_ftplugin = 1

setlocal comments=:@@ commentstring=@@\ %s
setlocal expandtab shiftwidth=4 softtabstop=4
if executable("vesper")
  setlocal makeprg=vesper\ check\ %:S errorformat=%f:%l:%c:\ %trror:\ %m,%f:%l:%c:\ %tarning:\ %m,%-G%.%#
endif

let b:undo_ftplugin = "setlocal comments< commentstring< expandtab< shiftwidth< softtabstop< makeprg< errorformat<"
