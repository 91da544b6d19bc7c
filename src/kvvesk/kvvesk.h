// The library's interface as one header: the root object and all it leads to, making a register,
// rights and states, errors and values.
#pragma once

#include "common/convert.h"
#include "common/error.h"
#include "kvdata/recordset/constants.h"
#include "kvdata/schema/create_register.h"
#include "kvvesk/version.h"
#include "revisions/revision_status.h"
#include "rights/rights.h"
#include "session/session.h"
#include "session/vesk.h"
#include "session/vesk_errors.h"
