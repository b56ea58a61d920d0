#pragma once
// Every interface between the analyser's front end and a host IDE.
#include "eil1/callbacks.h"
#include "eil1/commands.h"
#include "eil1/ide_env.h"
#include "eil1/message_bridge.h"
#include "eil1/pages.h"
#include "eil1/project.h"
#include "eil1/types.h"
#include "eil1/windows.h"
