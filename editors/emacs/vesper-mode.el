;;; vesper-mode.el --- VesperScript, with the language server of `vesper lsp' -*- lexical-binding: t -*-

;;; Commentary:
;; (load "…/editors/emacs/vesper-mode") and, for the language server, M-x eglot in a script.

;;; Code:

(defconst vesper-mode-keywords
  (regexp-opt '("if" "elseif" "else" "end" "while" "repeat" "until" "for" "in" "break" "return" "function" "nest"
                "local" "native" "external" "decay" "and" "or" "not")
              'symbols))

(defvar vesper-mode-syntax-table
  (let ((table (make-syntax-table)))
    (modify-syntax-entry ?\" "\"" table)
    (modify-syntax-entry ?' "\"" table)
    (modify-syntax-entry ?\\ "\\" table)
    (modify-syntax-entry ?_ "_" table)
    (modify-syntax-entry ?$ "_" table)
    (modify-syntax-entry ?@ ". 12" table)
    (modify-syntax-entry ?\n ">" table)
    table))

;;;###autoload
(define-derived-mode vesper-mode prog-mode "Vesper"
  "Major mode for VesperScript."
  (setq-local comment-start "@@ ")
  (setq-local comment-start-skip "@@+ *")
  (setq-local comment-end "")
  (setq-local tab-width 4)
  (setq-local indent-tabs-mode nil)
  (setq-local font-lock-defaults
              `(((,vesper-mode-keywords . font-lock-keyword-face)
                 ("\\_<\\(?:true\\|false\\)\\_>" . font-lock-constant-face)
                 ("\\_<function +\\([A-Za-z_$][A-Za-z0-9_$]*\\)" 1 font-lock-function-name-face)))))

;;;###autoload
(add-to-list 'auto-mode-alist '("\\.vs\\'" . vesper-mode))

(with-eval-after-load 'eglot
  (add-to-list 'eglot-server-programs '(vesper-mode . ("vesper" "lsp"))))

(provide 'vesper-mode)
;;; vesper-mode.el ends here
