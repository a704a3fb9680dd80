// What the running instance does for each command that comes over the control socket. Called by many threads at once.
#pragma once

#include "host/ControlProtocol.h"
#include "host/ControlServer.h"

class CRuntime;

ControlReply AnswerControlRequest(CRuntime& runtime, const ControlRequest& request, IControlClient& client);
