#include <pkider/c/pkider.h>

const char* pkider_status_text(uint32_t status) {
    switch (status) {
    case PKIDER_OK:
        return "no fault";
    case PKIDER_MALFORMED:
        return "the input is malformed";
    case PKIDER_NOT_FOUND:
        return "nothing was found";
    case PKIDER_NO_MEMORY:
        return "memory is exhausted";
    case PKIDER_TOO_LONG:
        return "an input or a result is too long";
    case PKIDER_NO_ROOM:
        return "the buffer is too small for the output";
    case PKIDER_HOST:
        return "a callback of the host failed";
    case PKIDER_WRONG_MAC:
        return "the MAC of the file is wrong, or was made with another password";
    case PKIDER_ARGUMENT:
        return "an argument is null, or a text contains a NUL";
    case PKIDER_INTERNAL:
        return "a defect of the library";
    }
    return "an unknown status";
}

const char* pkider_version(void) {
    return PKIDER_VERSION;
}
