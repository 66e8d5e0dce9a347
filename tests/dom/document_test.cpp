#include "dom/document.h"

#include <functional>

#include <gtest/gtest.h>

#include "host/error.h"

namespace {

using dom::DocumentRef;
using dom::Node;

long ErrorNumber(const std::function<void()>& f) {
    try {
        f();
    } catch (const host::Error& e) {
        return e.Number();
    }
    return 0;
}

DocumentRef Load(std::string_view text) {
    DocumentRef doc = dom::NewDocument();
    doc->setPreserveWhiteSpace(true);
    EXPECT_TRUE(doc->loadXML(text)) << text << ": " << doc->parseError().reason;
    return doc;
}

std::vector<std::string> Names(const dom::NodeList& list, const char* attribute = "name") {
    std::vector<std::string> out;
    for (Node n : list) out.push_back(host::CStr(n.getAttribute(attribute)));
    return out;
}

const char* kChart =
    "<chart id=\"VEX_Chart1\" type=\"column\" table-id=\"VEX_TableRange1\">"
    "<categories headings-in=\"rows\"><column name=\"Region\"/></categories>"
    "<series headings-in=\"columns\"><column name=\"2023\"/><column name=\"2024\"/></series>"
    "<values><column name=\"Sales\"/></values>"
    "<axes><axis type=\"label\" label=\"Region\" sticky=\"no\"/></axes>"
    "<comment>first</comment>"
    "</chart>";

TEST(DomLoad, RefusesTextThatIsNotWellFormedAndLeavesTheDocumentEmpty) {
    for (std::string_view bad : {"", "not xml", "<chart>", "<a></b>", "<a/><b/>", "<a>&nbsp;</a>", "<a>x & y</a>",
                                 "<a b='<'/>", "<a b='1' b='2'/>", "<a b=c/>"}) {
        DocumentRef doc = Load(kChart);
        EXPECT_FALSE(doc->loadXML(bad)) << bad;
        EXPECT_NE(doc->parseError().errorCode, 0) << bad;
        EXPECT_FALSE(doc->documentElement()) << bad;
        EXPECT_EQ(doc->xml(), "") << bad;
        EXPECT_EQ(doc->selectNodes("//column").length(), 0) << bad;
    }
    DocumentRef doc = dom::NewDocument();
    EXPECT_TRUE(doc->loadXML("<!-- c --><a x='&amp;&#65;&#x42;'><![CDATA[<&>]]></a>"));
    EXPECT_EQ(doc->parseError().errorCode, 0);
    EXPECT_EQ(doc->documentElement().getAttribute("x"), host::Variant("&AB"));
    EXPECT_EQ(doc->documentElement().text(), "<&>");
}

TEST(DomLoad, PropertiesAndWhitespace) {
    DocumentRef doc = dom::NewDocument();
    EXPECT_TRUE(doc->async());
    EXPECT_TRUE(doc->validateOnParse());
    EXPECT_FALSE(doc->preserveWhiteSpace());
    EXPECT_EQ(doc->getProperty("SelectionLanguage"), host::Variant("XSLPattern"));
    doc->setProperty("SelectionLanguage", "XPath");
    doc->setProperty("SelectionNamespaces", "xmlns:p='urn:p'");
    EXPECT_EQ(doc->getProperty("SelectionLanguage"), host::Variant("XPath"));
    EXPECT_EQ(ErrorNumber([&] { doc->setProperty("NoSuchThing", 1); }), dom::DomError);

    const char* spaced = "<a>\n  <b> x </b>\n</a>";
    ASSERT_TRUE(doc->loadXML(spaced));
    EXPECT_EQ(doc->documentElement().childNodes().length(), 1);
    EXPECT_EQ(doc->xml(), "<a><b> x </b></a>\r\n");
    doc->setPreserveWhiteSpace(true);
    ASSERT_TRUE(doc->loadXML(spaced));
    EXPECT_EQ(doc->documentElement().childNodes().length(), 3);
    EXPECT_EQ(doc->documentElement().text(), "\n   x \n");
}

TEST(DomAttributes, AbsentIsNullAndValuesAreText) {
    DocumentRef doc = Load("<chart id=\"VEX_Chart1\" title=\"\"/>");
    Node chart = doc->documentElement();
    EXPECT_TRUE(chart.getAttribute("table-worksheet").IsNull());
    EXPECT_EQ(chart.getAttribute("title"), host::Variant(""));
    EXPECT_EQ(chart.getAttribute("ID").IsNull(), true);  // names are case-sensitive

    chart.setAttribute("data-start-row", 12);
    chart.setAttribute("table-height", 2.5);
    chart.setAttribute("flag", true);
    chart.setAttribute("id", "VEX_Chart2");  // keeps its place
    EXPECT_EQ(chart.xml(),
              "<chart id=\"VEX_Chart2\" title=\"\" data-start-row=\"12\" table-height=\"2.5\" flag=\"True\"/>");
    EXPECT_EQ(ErrorNumber([&] { chart.setAttribute("x", host::Variant::Null()); }), host::err::InvalidUseOfNull);
    EXPECT_EQ(ErrorNumber([&] { chart.setAttribute("1x", 1); }), dom::DomError);
    chart.removeAttribute("flag");
    chart.removeAttribute("never-there");
    EXPECT_TRUE(chart.getAttribute("flag").IsNull());

    dom::NamedNodeMap attributes = chart.attributes();
    EXPECT_EQ(attributes.length(), 4);
    EXPECT_EQ(attributes.item(2).nodeName(), "data-start-row");
    EXPECT_FALSE(attributes.item(4));
    Node id = attributes.getNamedItem("id");
    EXPECT_EQ(id.nodeType(), dom::NODE_ATTRIBUTE);
    EXPECT_EQ(id.text(), "VEX_Chart2");
    EXPECT_EQ(id.nodeValue(), host::Variant("VEX_Chart2"));
    id.setText("VEX_Chart3");
    EXPECT_EQ(chart.getAttribute("id"), host::Variant("VEX_Chart3"));
    EXPECT_FALSE(attributes.getNamedItem("sticky"));

    Node text = doc->createTextNode("t");
    EXPECT_EQ(ErrorNumber([&] { text.getAttribute("id"); }), host::err::NoSuchProperty);
    EXPECT_FALSE(text.attributes());
}

TEST(DomXml, ChartDefinitionRoundTripsThroughItsText) {
    DocumentRef doc = dom::NewDocument();
    doc->setPreserveWhiteSpace(true);
    Node chart = doc->createElement("chart");
    doc->appendChild(chart);
    chart.setAttribute("id", "VEX_Chart1");
    chart.setAttribute("title", "Sales & \"Costs\" <2024> \xC3\xA9t\xC3\xA9 \xE2\x82\xAC");
    chart.setAttribute("number-format", "#,##0.00;[Red]-#,##0.00");
    Node categories = chart.appendChild(doc->createElement("categories"));
    categories.setAttribute("headings-in", "rows");
    categories.appendChild(doc->createElement("column")).setAttribute("name", "R&D <new>");
    chart.appendChild(doc->createElement("axes"));
    Node comment = chart.appendChild(doc->createElement("comment"));
    comment.appendChild(doc->createTextNode("Line 1 & <b>\r\nLine 2 \"q\" 'a' \xE2\x82\xAC"));

    const std::string expected =
        "<chart id=\"VEX_Chart1\" title=\"Sales &amp; &quot;Costs&quot; &lt;2024&gt; \xC3\xA9t\xC3\xA9 \xE2\x82\xAC\""
        " number-format=\"#,##0.00;[Red]-#,##0.00\">"
        "<categories headings-in=\"rows\"><column name=\"R&amp;D &lt;new&gt;\"/></categories>"
        "<axes/>"
        "<comment>Line 1 &amp; &lt;b&gt;&#13;\nLine 2 \"q\" 'a' \xE2\x82\xAC</comment>"
        "</chart>";
    EXPECT_EQ(chart.xml(), expected);
    EXPECT_EQ(doc->xml(), expected + "\r\n");

    DocumentRef again = Load(doc->xml());
    EXPECT_EQ(again->xml(), doc->xml());
    EXPECT_EQ(again->selectSingleNode("chart/comment").text(), comment.text());
    EXPECT_EQ(again->documentElement().getAttribute("title"), chart.getAttribute("title"));
    EXPECT_EQ(again->selectSingleNode("//column").getAttribute("name"), host::Variant("R&D <new>"));

    // Line breaks in attributes survive; a declaration is kept without its encoding.
    chart.setAttribute("title", "two\nlines\tand\r\nmore");
    EXPECT_EQ(Load(doc->xml())->documentElement().getAttribute("title"), chart.getAttribute("title"));
    DocumentRef declared = Load("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!--note--><chart><a></a></chart>");
    EXPECT_EQ(declared->xml(), "<?xml version=\"1.0\"?>\r\n<!--note-->\r\n<chart><a/></chart>\r\n");
    EXPECT_EQ(declared->firstChild().nodeName(), "xml");
    EXPECT_EQ(dom::NewDocument()->xml(), "");
}

TEST(DomQuery, ChildPathsDescendantsAndRelativeQueries) {
    DocumentRef doc = Load(kChart);
    EXPECT_EQ(Names(doc->selectNodes("chart/series/column")), (std::vector<std::string>{"2023", "2024"}));
    EXPECT_EQ(Names(doc->selectNodes("//column")), (std::vector<std::string>{"Region", "2023", "2024", "Sales"}));
    EXPECT_EQ(doc->selectSingleNode("chart/values/column").getAttribute("name"), host::Variant("Sales"));
    EXPECT_FALSE(doc->selectSingleNode("chart/x-values"));
    EXPECT_EQ(doc->selectNodes("chart/bubble-sizes/column").length(), 0);

    Node chart = doc->documentElement();
    Node series = chart.selectSingleNode("series");
    EXPECT_EQ(series.getAttribute("headings-in"), host::Variant("columns"));
    EXPECT_EQ(Names(series.selectNodes("column")), (std::vector<std::string>{"2023", "2024"}));
    EXPECT_EQ(series.selectNodes("//column").length(), 4);  // "//" starts at the document
    EXPECT_EQ(series.selectSingleNode("../values/column").getAttribute("name"), host::Variant("Sales"));
    EXPECT_EQ(Names(doc->selectNodes("//axis[@type='label' and @sticky='no']"), "label"),
              (std::vector<std::string>{"Region"}));
    Node id = doc->selectSingleNode("chart/@id");
    EXPECT_EQ(id.text(), "VEX_Chart1");
    EXPECT_EQ(doc->selectSingleNode("chart/comment/text()").nodeValue(), host::Variant("first"));

    dom::NodeList columns = doc->selectNodes("//column");
    EXPECT_EQ(columns.item(0).getAttribute("name"), host::Variant("Region"));
    EXPECT_FALSE(columns.item(4));
    EXPECT_FALSE(columns.item(-1));

    for (const char* bad : {"chart/[", "count(//column)", "//column[@name='x'"}) {
        try {
            doc->selectNodes(bad);
            ADD_FAILURE() << bad;
        } catch (const host::Error& e) {
            EXPECT_EQ(e.Number(), dom::DomError);
            EXPECT_NE(e.Description().find(bad), std::string::npos) << e.Description();
        }
    }
}

TEST(DomTree, AppendRemoveMoveInsertAndClone) {
    DocumentRef doc = Load(kChart);
    Node chart = doc->documentElement();
    Node categories = chart.selectSingleNode("categories");
    Node series = chart.selectSingleNode("series");

    // A created element belongs to no tree until appended.
    Node values = doc->createElement("values");
    EXPECT_FALSE(values.parentNode());
    EXPECT_EQ(doc->selectNodes("chart/values").length(), 1);
    EXPECT_EQ(chart.appendChild(values), values);
    EXPECT_EQ(values.parentNode(), chart);
    EXPECT_EQ(values.ownerDocument(), doc);
    EXPECT_EQ(doc->selectNodes("chart/values").length(), 2);

    // Removing keeps the node usable, and out of every query.
    Node removed = chart.removeChild(series);
    EXPECT_EQ(removed, series);
    EXPECT_FALSE(series.parentNode());
    EXPECT_EQ(series.selectNodes("column").length(), 2);
    EXPECT_EQ(series.selectNodes("//column").length(), 2);  // its own tree only
    EXPECT_EQ(Names(doc->selectNodes("//column")), (std::vector<std::string>{"Region", "Sales"}));
    EXPECT_EQ(chart.selectNodes("*").length(), 5);
    EXPECT_EQ(ErrorNumber([&] { chart.removeChild(series); }), host::err::InvalidProcedureCall);

    // Appending a node of the tree moves it; insertBefore places it.
    values.appendChild(categories.firstChild());
    EXPECT_FALSE(categories.hasChildNodes());
    chart.insertBefore(series, categories);
    dom::NodeList children = chart.childNodes();
    EXPECT_EQ(children.item(0).nodeName(), "series");
    EXPECT_EQ(children.item(1).nodeName(), "categories");
    EXPECT_EQ(children.item(children.length() - 1), values);
    EXPECT_EQ(values.firstChild().getAttribute("name"), host::Variant("Region"));
    EXPECT_EQ(chart.lastChild(), values);
    EXPECT_EQ(values.previousSibling().nodeName(), "comment");
    EXPECT_FALSE(values.nextSibling());
    EXPECT_EQ(ErrorNumber([&] { series.appendChild(chart); }), dom::DomError);
    EXPECT_EQ(ErrorNumber([&] { doc->appendChild(doc->createElement("chart")); }), dom::DomError);
    EXPECT_EQ(ErrorNumber([&] { doc->appendChild(doc->createTextNode("x")); }), dom::DomError);

    // text: all descendant text; setting it replaces the children.
    Node comment = chart.selectSingleNode("comment");
    comment.appendChild(doc->createElement("b")).appendChild(doc->createTextNode(" more"));
    EXPECT_EQ(comment.text(), "first more");
    comment.setText("new & plain");
    EXPECT_EQ(comment.xml(), "<comment>new &amp; plain</comment>");
    Node empty = chart.appendChild(doc->createElement("note"));
    empty.appendChild(doc->createTextNode(""));
    EXPECT_EQ(empty.xml(), "<note></note>");

    // Clones stand outside the tree.
    Node deep = series.cloneNode(true);
    Node shallow = series.cloneNode(false);
    EXPECT_EQ(deep.xml(), series.xml());
    EXPECT_EQ(shallow.xml(), "<series headings-in=\"columns\"/>");
    EXPECT_FALSE(deep.parentNode());
    EXPECT_EQ(doc->selectNodes("//series").length(), 1);

    // A node of another document is copied in and leaves its own document.
    DocumentRef other = Load("<table><label-column name=\"Region\"/></table>");
    Node column = other->documentElement().firstChild();
    Node placed = chart.appendChild(column);
    EXPECT_EQ(placed.ownerDocument(), doc);
    EXPECT_EQ(placed.nodeName(), "label-column");
    EXPECT_FALSE(column.parentNode());
    EXPECT_EQ(other->xml(), "<table/>\r\n");

    // Handles into a document outlive a new load of it.
    DocumentRef reloaded = Load(kChart);
    Node old = reloaded->selectSingleNode("//comment");
    ASSERT_TRUE(reloaded->loadXML("<chart/>"));
    EXPECT_EQ(old.text(), "first");
    EXPECT_EQ(reloaded->xml(), "<chart/>\r\n");
    EXPECT_EQ(reloaded->documentElement().parentNode(), reloaded->node());
}

TEST(DomNothing, MembersOfNothingRaise91) {
    DocumentRef doc = Load(kChart);
    Node missing = doc->selectSingleNode("chart/x-values");
    EXPECT_FALSE(missing);
    EXPECT_EQ(missing, Node());
    EXPECT_NE(missing, doc->documentElement());
    const long notSet = host::err::ObjectVariableNotSet;
    EXPECT_EQ(ErrorNumber([&] { missing.getAttribute("name"); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { missing.setAttribute("name", "x"); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { missing.text(); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { missing.selectNodes("column"); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { missing.appendChild(doc->createElement("a")); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { doc->documentElement().attributes().getNamedItem("nope").text(); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { doc->createTextNode("t").attributes().getNamedItem("a"); }), notSet);
    EXPECT_EQ(ErrorNumber([&] { doc->documentElement().appendChild(missing); }), host::err::InvalidProcedureCall);
    try {
        missing.nodeName();
        ADD_FAILURE();
    } catch (const host::Error& e) {
        EXPECT_EQ(e.Description(), "Object variable or With block variable not set");
    }
}

}  // namespace
