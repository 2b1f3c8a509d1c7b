#pragma once

#include "fenk/AbstractAppender.h"
#include "fenk/ConsoleAppender.h"
#include "fenk/FileAppender.h"
#include "fenk/LogManager.h"
#include "fenk/Logger.h"
#include "fenk/RollingFileAppender.h"
