#include "EReferenceSEC.h"

#include "private/Literals.h"

const char* literalOf(EReferenceSEC rsec) {
    switch (rsec) {
    case EReferenceSEC::Class2:
        return "2";
    case EReferenceSEC::Class4L:
        return "4L";
    case EReferenceSEC::Class4H:
        return "4H";
    case EReferenceSEC::Class5B:
        return "5B";
    case EReferenceSEC::Class6B:
        return "6B";
    case EReferenceSEC::Class5LB:
        return "5LB";
    case EReferenceSEC::Class5HB:
        return "5HB";
    case EReferenceSEC::Class6LB:
        return "6LB";
    case EReferenceSEC::Class6HB:
        return "6HB";
    case EReferenceSEC::Class7B:
        return "7B";
    case EReferenceSEC::UNDEFINED:
        break;
    }
    return "UNDEFINED";
}

std::string convertRsecEnumToString(EReferenceSEC rsec) {
    return literalOf(rsec);
}
