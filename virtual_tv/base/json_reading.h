#pragma once

#include "common/json_reading.h"

namespace vxtv {

using vxcommon::WrongMember;

using vxcommon::boolIn;
using vxcommon::entryOf;
using vxcommon::expectArray;
using vxcommon::expectName;
using vxcommon::expectObject;
using vxcommon::expectOnly;
using vxcommon::expectShortArray;
using vxcommon::intIn;
using vxcommon::memberIfThere;
using vxcommon::memberOf;
using vxcommon::numberBetween;
using vxcommon::stringIn;
using vxcommon::visibleText;
using vxcommon::wholeNumber;
using vxcommon::within;

}  // namespace vxtv
