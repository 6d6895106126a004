# Reads the public headers for Doxygen, which wants a comment at every declaration. Here a comment
# says what the signature does not, and:
# - a plain comment in the first column holds for the functions below it, up to the next such one;
# - what the signature says alone gets the sentence below.
# Whatever else lacks a comment stays without one, which is an error.

BEGIN {
    say("operator!=\\(", "The opposite of ==.")
    say("operator==\\(", "Whether both are equal, as the comment above or of the class says.")
    say("std::nullptr_t, TEST_STATUS", "As for an empty message.")
    say("^ *explicit (TQ[A-Za-z]*|CTestSuite)Exception\\(", "With the given message and status, or the class's own text.")
    say("([A-Za-z]+)\\([A-Za-z]+ const&\\) = default;", "A copy.")
    say("operator=\\([A-Za-z]+ const&\\) = default;", "Takes over message and status.")
    say("GetStatus\\(\\)", "The status given at construction.")
    say("using (const_)?(reverse_)?iterator = std", "The standard string's.")
    say("using [a-z_]+ = ", "As in the standard view.")
    say("CSafeString\\(unsigned long count, char", "That many copies of the character.")
    say("CSafeString\\(basic_sv_wrapper<(wchar_t|char16_t)> text\\)", "The text as UTF-8.")
    say("CSafeString\\(CSafeString const&", "A copy of the whole text.")
    say("CSafeString\\(CSafeString&&", "Takes the text; `other` then holds nothing.")
    say("CSafeString\\(std::vector", "The items joined as by do_join.")
    say("void set\\(", "The same with the text as UTF-8.")
    say("char(_type)? const\\* data\\(\\) const|char\\* data\\(\\)|CharT const\\* data\\(\\)", "The start of the text.")
    say(" size\\(\\) const", "How many characters, NULs included.")
    say(" empty\\(\\) const", "Whether the size is 0.")
    say("operator\\[\\]", "The character at that position, which is not checked.")
    say("(front|back)\\(\\) const", "The same for reading.")
    say("c?r?(begin|end)\\(\\)", "The position as in the standard string.")
    say("to_path\\(\\)", "A path of the whole text.")
    say("operator\\+=\\(|append\\(", "Appends all of it.")
    say("(do_)?join\\(", "The same with one character, or none for NUL, between the items.")
    say("to_string\\(", "The decimal text, as above.")
    say("AddBackColor\\(", "The same for the background.")
    say("m_(Red|Green|Blue|Alpha) ", "A channel of 0 to 255.")
    say("m_Color\\{", "The colour of the text.")
    say("m_BackColor\\{", "The colour of the background.")
    say("m_(TextStyle|TextEffect) ", "An attribute whose meaning is the application's.")
    say("m_Weight ", "How bold, 400 being normal.")
    say("m_[A-Za-z]+Changed ", "Whether it changed since the flags were last reset.")
    say("m_Has(Color|BackColor) ", "Whether a colour was added.")
    say("int (Major|Minor|Patch)\\(\\)", "The component of the system's version.")
    say("int GetVersion[A-Z]", "The component of the library's version.")
    say("SetRefreshCompleted|RefreshCompleted\\(\\) const", "See RefreshInit.")
    say("Pick(SingleFile|Directory|MultipleFiles)\\(|^ *custom_unique_ptr<std::optional", "Lets the operator pick; see the remark on texts above.")
    say("void ExceptionThrown\\(bool", "Sets what ExceptionThrown() returns.")
    say("bool m_ExceptionThrown", "The flag of ExceptionThrown().")
    say("IsUserAbortOk|UserAbortEnabled|UserAbortRequested|IsPaused", "Whether it is so at this moment.")
    say("UserAbortPause", "From now on Send throws nothing.")
    say("UserAbortResume", "Ends the pause.")
    say("m_UserAbort[A-Z]", "The plain flag; read and set it by the functions.")
    say("m_Data[1-4]", "A part of the identifier, in the order of its text.")
    say("UserInputState\\(\\)|m_UserInputState", "Where the operator's input stands; 0 at load.")
    say("void UserInputState\\(", "Sets where the operator's input stands.")
    say("m_AppName", "See AppName; null at load.")
    say("m_UISignaler", "The registered signaler, not owned; null at load.")
    say("basic_sv_wrapper\\(std::basic_string", "The whole text.")
    say("operator std::basic_string_view", "The standard view of the same text.")
    say("explicit CFormattedString\\(", "Formats and keeps the text, indented by the level of this moment.")
    say("size_t operator\\(\\)", "The hash.")
    say("bool operator\\(\\)\\(CSafeString", "Whether the left text orders before the right one.")
}

function say(pattern, sentence) { patterns[++count] = pattern; sentences[count] = sentence }

function describe(words, margin,   lines, number, total) {
    total = split(words, lines, "\n")
    for (number = 1; number <= total; ++number)
        print margin "/// " lines[number]
}

NR == 1 { print "/// @file" }

/^extern template/ { skipping = 1 } # made once in the library; declared for callers above
skipping {
    if (/;$/)
        skipping = 0
    next
}

/^struct (BASEUTILITIES_EXPORT )?(std|fmt)::/ { sub(/(std|fmt)::/, "") } # a specialisation, shown by its name

/^ *\/\// {
    if (!inComment)
        held = ""
    line = $0
    sub(/^ *\/\/\/? ?/, "", line)
    held = held (held == "" ? "" : "\n") line
    isInFirstColumn = /^\/\//
    isDocumented = /^ *\/\/\//
    inComment = 1
    print
    next
}

inComment && !isDocumented && isInFirstColumn { section = held }

/^$/ {
    inComment = 0
    print
    next
}

{
    described = inComment && isDocumented
    inside = parentheses > 0
    if (!described && !inside && /^ +[A-Za-z~].*[({;=]/ && !/^ *(return|if|throw|static_assert|else|auto|:)/) {
        match($0, /^ */)
        for (number = 1; number <= count; ++number)
            if ($0 ~ patterns[number]) {
                describe(sentences[number], substr($0, 1, RLENGTH))
                break
            }
    } else if (!described && !inside && /^(BASEUTILITIES_EXPORT|inline|template) / && continued == 0) {
        words = section
        if ($0 ~ /operator!=\(/)
            words = "The opposite of ==."
        if (words != "")
            describe(words, "")
    }
    if (/^(class|struct|enum)/)
        section = ""
    inComment = 0
    print
    line = $0
    parentheses += gsub(/\(/, "", line) - gsub(/\)/, "", line)
    continued = /^(BASEUTILITIES_EXPORT|template)/ && !/[;{}]$/ || continued && !/[;{}]$/
}
