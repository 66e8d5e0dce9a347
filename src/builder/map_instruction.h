#pragma once
// CPSMapInstruction: one rule of the map from a source table to a chart's rectangle. Plain data:
// where the target category and series are found, where the value comes from, and whether it
// replaces or adds to what the target holds. A new rule has every field 0 and no value.
#include <memory>

#include "host/variant.h"

namespace ps {

// RowReferenceType, ColReferenceType.
inline constexpr long mrFixed = 0;   // the position is the index itself
inline constexpr long mrByCell = 1;  // the position is a sheet column whose text names the index
// ValueReferenceType.
inline constexpr long mvFromCell = 0;  // ValuePositionOrConstant is a sheet column
inline constexpr long mvConstant = 2;  // ValuePositionOrConstant is the value
// CellValueType.
inline constexpr long mcText = 0;    // the displayed text replaces the target
inline constexpr long mcNumber = 1;  // the value as a Double adds to the target

class CPSMapInstruction {
public:
    long RowReferenceType() const { return lRowReferenceType; }
    void SetRowReferenceType(long ReferenceType) { lRowReferenceType = ReferenceType; }
    long RowReferencePosition() const { return lRowReferencePosition; }
    void SetRowReferencePosition(long ColumnPosition) { lRowReferencePosition = ColumnPosition; }
    long ColReferenceType() const { return lColReferenceType; }
    void SetColReferenceType(long ReferenceType) { lColReferenceType = ReferenceType; }
    long ColReferencePosition() const { return lColReferencePosition; }
    void SetColReferencePosition(long ColumnPosition) { lColReferencePosition = ColumnPosition; }
    long ValueReferenceType() const { return lValueReferenceType; }
    void SetValueReferenceType(long ReferenceType) { lValueReferenceType = ReferenceType; }
    const host::Variant& ValuePositionOrConstant() const { return vValuePositionOrConstant; }
    void SetValuePositionOrConstant(const host::Variant& ColumnPositionOrValue) {
        vValuePositionOrConstant = ColumnPositionOrValue;
    }
    long CellValueType() const { return lCellValueType; }
    void SetCellValueType(long CellType) { lCellValueType = CellType; }

private:
    long lRowReferenceType = 0;
    long lRowReferencePosition = 0;
    long lColReferenceType = 0;
    long lColReferencePosition = 0;
    long lValueReferenceType = 0;
    host::Variant vValuePositionOrConstant;
    long lCellValueType = 0;
};

// A whole rule at once, for the maps that know every field when they make it.
inline std::shared_ptr<CPSMapInstruction> MakeInstruction(long lRowType, long lRowPosition, long lColType,
                                                          long lColPosition, long lValueType,
                                                          const host::Variant& vValue, long lCellType) {
    auto oInstruction = std::make_shared<CPSMapInstruction>();
    oInstruction->SetRowReferenceType(lRowType);
    oInstruction->SetRowReferencePosition(lRowPosition);
    oInstruction->SetColReferenceType(lColType);
    oInstruction->SetColReferencePosition(lColPosition);
    oInstruction->SetValueReferenceType(lValueType);
    oInstruction->SetValuePositionOrConstant(vValue);
    oInstruction->SetCellValueType(lCellType);
    return oInstruction;
}

}  // namespace ps
