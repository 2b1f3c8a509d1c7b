#pragma once

#include "bottleservice/wire/BusObject.h"

class TemplateRequests;

/// com.lumora.Manager.Templates at /com/lumora/Manager/Templates.
class TemplatesObject : public BusObject {
    Q_OBJECT

public:
    explicit TemplatesObject(TemplateRequests* requests, QObject* parent = nullptr);
};
