#pragma once
// The out-of-line special members of an interface (declared by
// EIL1_SPECIAL_MEMBERS and its siblings in eil1/types.h).
#define EIL1_DEFINE_SPECIAL_MEMBERS(I)                                                             \
    I::I() = default;                                                                              \
    I::I(const I&) = default;                                                                      \
    I& I::operator=(const I&) = default;                                                           \
    I::~I() = default
