# How the translation files are made from the sources; sourced by scripts/update-translations and by the test.

# update_translations <source tree> <folder of the .ts files>
update_translations() {
    local tree=$1 folder=$2
    # Without lupdate's guesses, which are right sometimes and have to be read each time.
    local guesses=(-disable-heuristic sametext -disable-heuristic similartext -disable-heuristic number)
    (cd "$tree" && lupdate -silent -no-obsolete -locations none -source-language zh_CN "${guesses[@]}" -I . \
        app cloud content device demo update -ts "$folder/quillbox_zh_CN.ts" "$folder/quillbox_en_WW.ts")
    # A source text becomes its own translation; the inner group keeps the match within one message.
    local source='<source>((?:(?!</source>).)*)</source>' between='(?:(?!</message>).)*?'
    perl -0pi -e "s{$source($between)<translation type=\"unfinished\"></translation>}
        {<source>\$1</source>\$2<translation>\$1</translation>}gs" "$folder/quillbox_zh_CN.ts"
}
