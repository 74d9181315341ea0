#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace qndr::sql {

enum class ValueType { Null, Integer, Real, Text, Bytes };

/// What a database supplies for a prepared statement; see Statement for what each call is.
class PreparedStatement {
  public:
    virtual ~PreparedStatement() = default;

    virtual bool Step() = 0;
    virtual void Reset() = 0;
    virtual std::int64_t ChangedRows() const = 0;

    virtual int ParameterCount() const = 0;
    virtual void BindNull(int parameter) = 0;
    virtual void BindInteger(int parameter, std::int64_t number) = 0;
    virtual void BindReal(int parameter, double number) = 0;
    /// With `stays` the caller keeps the value where it is until the statement is bound anew or gone.
    virtual void BindText(int parameter, std::string_view text, bool stays) = 0;
    virtual void BindBytes(int parameter, std::string_view bytes, bool stays) = 0;

    virtual int ColumnCount() const = 0;
    virtual std::string ColumnName(int column) const = 0;
    virtual ValueType Type(int column) const = 0;
    virtual std::int64_t Integer(int column) const = 0;
    virtual double Real(int column) const = 0;
    virtual std::string_view Text(int column) const = 0;
    virtual std::string_view Bytes(int column) const = 0;
};

/// A prepared statement; finalised with its destruction. Its connection must outlive it. Columns count from 0,
/// parameters from 1. Every call that speaks to the database raises Error.
class Statement {
  public:
    explicit Statement(std::unique_ptr<PreparedStatement> prepared) : prepared_(std::move(prepared)) {}

    /// True for a row, false at the end.
    bool Step() { return prepared_->Step(); }
    void Reset() { prepared_->Reset(); }
    /// How many rows it has changed since it began, not counting what triggers did at its behest. To be asked at
    /// its end, before Reset.
    std::int64_t ChangedRows() const { return prepared_->ChangedRows(); }

    int ParameterCount() const { return prepared_->ParameterCount(); }
    void Bind(int parameter, std::string_view text) { prepared_->BindText(parameter, text, false); }
    void Bind(int parameter, std::int64_t number) { prepared_->BindInteger(parameter, number); }
    void BindReal(int parameter, double number) { prepared_->BindReal(parameter, number); }
    void BindBytes(int parameter, std::string_view bytes) { prepared_->BindBytes(parameter, bytes, false); }
    void BindNull(int parameter) { prepared_->BindNull(parameter); }
    /// Without a copy: the value stays where it is until the parameter is bound anew.
    void BindInPlace(int parameter, std::string_view text) { prepared_->BindText(parameter, text, true); }
    void BindBytesInPlace(int parameter, std::string_view bytes) { prepared_->BindBytes(parameter, bytes, true); }

    int ColumnCount() const { return prepared_->ColumnCount(); }
    std::string ColumnName(int column) const { return prepared_->ColumnName(column); }
    ValueType Type(int column) const { return prepared_->Type(column); }
    bool IsNull(int column) const { return Type(column) == ValueType::Null; }
    std::int64_t Integer(int column) const { return prepared_->Integer(column); }
    double Real(int column) const { return prepared_->Real(column); }
    /// Valid until the next Step, Reset or conversion of the column.
    std::string_view Text(int column) const { return prepared_->Text(column); }
    std::string_view Bytes(int column) const { return prepared_->Bytes(column); }

  private:
    std::unique_ptr<PreparedStatement> prepared_;
};

} // namespace qndr::sql
