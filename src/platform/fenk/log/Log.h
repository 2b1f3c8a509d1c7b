#pragma once

#include "fenk/log/AbstractAppender.h"
#include "fenk/log/ConsoleAppender.h"
#include "fenk/log/FileAppender.h"
#include "fenk/log/LogManager.h"
#include "fenk/log/Logger.h"
#include "fenk/log/RollingFileAppender.h"
