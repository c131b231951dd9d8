#pragma once

#include "MailCore/Platform/Bytes.h"
