#include <pkider/dn.h>

// Walks the raw text and interprets only quotes and backslashes. After a mismatch it waits for the next piece of `dn`
// and begins again with the first RDN of `attrs` that is not yet found.
bool printable_dn_contain_attrs(const char* dn, const char* attrs) {
    const char* wanted = attrs;
    const char* restart = attrs;
    bool matching = true;
    bool in_quotes = false;
    for (char previous = '\0'; *dn != '\0'; previous = *dn++) {
        // One backslash before it is enough, even an escaped one.
        // Required: DnContainAttrs.Answers/RequiredTwoBackslashesEscapeToo.
        const bool escaped = previous == '\\';
        if (*dn == '"' && !escaped) in_quotes = !in_quotes;
        const bool at_boundary = *dn == ',' && !escaped && !in_quotes;

        if (matching) {
            // A longer piece with the same beginning ends the search, although an equal one may follow.
            // Required: DnContainAttrs.Answers/RequiredLongerPieceWithTheSameBeginningEndsTheSearch.
            if (*wanted == '\0') return at_boundary;

            matching = *dn == *wanted;
            wanted = matching ? wanted + 1 : restart;
            // Required: DnContainAttrs.Answers/RequiredEscapedCommaIsARestartPoint.
            if (matching && *dn == ',' && !in_quotes) restart = wanted;
        }
        if (at_boundary) matching = true;
    }
    return *wanted == '\0';
}
