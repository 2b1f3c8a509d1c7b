#pragma once
#include "core.h"

#include <QApplication>
#include <QBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMainWindow>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QWidget>
