#pragma once
// Everything a grid model or a dialog that hosts a grid needs.
#include "gridview8/grid.h"
#include "uicore7/geometry.h"
#include "uicore7/input.h"
#include "uicore7/painter.h"
#include "uicore7/sender_list.h"
#include "uicore7/sys_window.h"
#include "uiframe7/base_control.h"
#include "uiframe7/combo_box.h"
#include "uiframe7/event_handler.h"
#include "uiframe7/header.h"
#include "uiframe7/item_view_model.h"
#include "uiframe7/viewer_base.h"
