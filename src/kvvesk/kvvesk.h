// SPDX-License-Identifier: Apache-2.0
// The library's interface as one header: the root object and all it leads to, making a register,
// rights and states, errors and values.
#pragma once

#include "classes/revisions/revision_status.h"
#include "classes/rights/rights.h"
#include "classes/session/session.h"
#include "classes/session/vesk.h"
#include "classes/session/vesk_errors.h"
#include "common/convert.h"
#include "common/error.h"
#include "kvvesk/version.h"
#include "recordset/constants.h"
#include "schema/create_register.h"
