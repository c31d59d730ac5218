#pragma once
// A package that logs owns one pointer to its minor group,
// LgGroups::QV_XGLUE( MinorLevel, <Group> ), created by its initialise step and
// deleted by its finalise step. The checks report without throwing: a second
// initialise of a package is a host error worth a log line, not a failed load.
#include "assertions.h"
#include "lgLog.h"

#define QV_CREATE_MINOR_GROUP(Major, Group)                                                                  \
    do {                                                                                                     \
        if (!(LgGroups::QV_XGLUE(MinorLevel, Group) == 0))                                                   \
            ::Qv::Assertions::reportAssertionFailed(__FILE__, __LINE__,                                      \
                                                    "LgGroups::QV_XGLUE( MinorLevel, " #Group " ) == 0");    \
        delete LgGroups::QV_XGLUE(MinorLevel, Group);                                                        \
        LgGroups::QV_XGLUE(MinorLevel, Group) =                                                              \
            new ::Qv::LgMinorGroup(::Qv::LgMajorGroup::getInstanceForName(Major), #Group);                   \
    } while (false)

#define QV_DELETE_MINOR_GROUP(Group)                                                                         \
    do {                                                                                                     \
        if (!(LgGroups::QV_XGLUE(MinorLevel, Group) != 0))                                                   \
            ::Qv::Assertions::reportAssertionFailed(__FILE__, __LINE__,                                      \
                                                    "LgGroups::QV_XGLUE( MinorLevel, " #Group " ) != 0");    \
        delete LgGroups::QV_XGLUE(MinorLevel, Group);                                                        \
        LgGroups::QV_XGLUE(MinorLevel, Group) = nullptr;                                                     \
    } while (false)
