#include "ornmsg/ornmsg.h"

std::wstring ornMsg(unsigned int number) {
    switch (number) {
        case 218: return L"\"%ls\" is not a UUID.";
        case 248: return L"The file \"%ls\" holds text that is not valid in its encoding.";
        case 249: return L"The file \"%ls\" cannot be opened: %hs.";
        case 250: return L"The file \"%ls\" cannot be created: %hs.";
        case 251: return L"The file \"%ls\" cannot be read: %hs.";
        case 252: return L"The file \"%ls\" cannot be written: %hs.";
        case 253: return L"The file \"%ls\" cannot be closed: %hs.";
        case 254: return L"The character %ls cannot be written to the file \"%ls\".";
        case 271: return L"%ls";
        case 278: return L"The address \"%ls\" cannot be understood: %ls";
        case 280: return L"The address \"%ls\" cannot be downloaded: %ls";
        case 282: return L"Manufacturer: %ls\nModel: %ls\nDescription: %ls";
        case 283: return L"A quoted field is not closed.";
        default: return L"Message " + std::to_wstring(number);
    }
}
