// Interfaces that know their identifiers, for __uuidof.
#pragma once
#include_next <rpcndr.h>

#undef MIDL_INTERFACE
#define MIDL_INTERFACE(identifier) struct __declspec(uuid(identifier)) __declspec(novtable)
