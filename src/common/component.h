#pragma once
// The component's state: one object per entry-class instance. It holds the run variables under
// their names, the toolkit's dialogs and front end, the clock, and one instance of each module.
// Modules hold a reference to it and call each other through it: c.builder->PopulateChart(id).
// Its constructor and destructor live in src/controller, where all modules are known.
#include <memory>
#include <string>

#include "dom/document.h"
#include "host/collection.h"
#include "host/fwd.h"

namespace forms {
class Dialogs;
class FrontEnd;
}  // namespace forms

namespace ps {

class Clock;
class CommonFunctions;
class PSFunctions;
class PSChartBuilder;
class PSRevEngineerChart;
class PSController;
class frmPSSelectAction;
class frmPSSelectTable;
class frmPSLayoutABC;
class frmPSLayoutBubble;
class frmPSLayoutPie;
class frmPSLayoutStrBuck;
class frmPSChartLocation;

// A collection variable: null is Nothing.
template <class T>
using CollectionRef = std::shared_ptr<host::Collection<T>>;

// What the run variables mean: lMethodType.
enum MethodType : long { mtNew = 0, mtModify = 1, mtCopy = 2, mtDelete = 3, mtRefresh = 4 };

class Component {
public:
    Component(forms::FrontEnd& frontEnd, forms::Dialogs& dialogs, Clock& clock);
    ~Component();
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    // The toolkit and the process's clock.
    forms::FrontEnd& frontEnd;
    forms::Dialogs& dialogs;
    Clock& clock;

    // Run variables.
    host::Ref<host::Application> oApplication;
    std::string sCustomAppName;
    host::Ref<host::Workbook> oWorkbook;
    CollectionRef<dom::DocumentRef> colTables;
    CollectionRef<dom::DocumentRef> colCharts;
    CollectionRef<host::Ref<host::Chart>> colChartObjects;
    CollectionRef<host::Ref<host::Shape>> colChartShapes;
    dom::DocumentRef oChartDoc;
    long lMethodType = mtNew;
    std::string sChartType = "unknown";
    std::string sChartID;
    std::string sTableID;
    std::string sPendingMessage;
    bool bRunAborted = false;
    bool bUnloadingPage = false;
    long lLastYieldTime = 0;
    std::string sHelpFile;  // stands for the process-wide help file path the pages open

    // Modules.
    std::unique_ptr<CommonFunctions> common;
    std::unique_ptr<PSFunctions> functions;
    std::unique_ptr<PSChartBuilder> builder;
    std::unique_ptr<PSRevEngineerChart> readback;
    std::unique_ptr<PSController> controller;

    // Page instances, made on first use and kept; unloaded between uses.
    std::unique_ptr<frmPSSelectAction> pageSelectAction;
    std::unique_ptr<frmPSSelectTable> pageSelectTable;
    std::unique_ptr<frmPSLayoutABC> pageLayoutABC;
    std::unique_ptr<frmPSLayoutBubble> pageLayoutBubble;
    std::unique_ptr<frmPSLayoutPie> pageLayoutPie;
    std::unique_ptr<frmPSLayoutStrBuck> pageLayoutStrBuck;
    std::unique_ptr<frmPSChartLocation> pageChartLocation;
};

}  // namespace ps
