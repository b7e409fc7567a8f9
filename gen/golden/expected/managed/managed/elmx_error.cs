// Generated from lmx/errors.h and lmx/errors.cpp by gen/emit_managed.py: edit those, not this.
namespace Zol.Interop
{
  /// <summary>What an operation gives: 0, or why it failed.</summary>
  public enum elmx_error
  {
    elmx_ok = 0,
    elmx_no_file = 1,
    elmx_all_cardinality = 2,
    elmx_attribute_already_read = 3,
    elmx_attributes_in_anonymous_compositor = 4,
    elmx_badly_formed = 5,
    elmx_bad_char_encoding = 6,
    elmx_bad_choice = 7,
    elmx_bad_comment = 8,
    elmx_bad_dtd = 9,
    elmx_bad_end_of_element = 10,
    elmx_bad_start_tag_end = 11,
    elmx_bad_end_tag = 12,
    elmx_bad_xml_decl = 13,
    elmx_bad_xml_version = 14,
    elmx_encoding_mismatch = 15,
    elmx_element_not_found = 16,
    elmx_external_entity = 17,
    elmx_fraction_digits = 18,
    elmx_length_too_long = 19,
    elmx_length_too_short = 20,
    elmx_mandatory_element_missing = 21,
    elmx_no_pattern_match = 22,
    elmx_not_well_formed = 23,
    elmx_recursive_entity = 24,
    elmx_required_attributes_missing = 25,
    elmx_too_many_elements = 26,
    elmx_total_digits = 27,
    elmx_bad_attribute_value = 28,
    elmx_bad_element_value = 29,
    elmx_unknown_element_in_all = 30,
    elmx_unknown_element_in_complex_content = 31,
    elmx_unexpected_empty_element = 32,
    elmx_unexpected_entity = 33,
    elmx_unexpected_end = 34,
    elmx_bad_value_format = 35,
    elmx_value_too_big = 36,
    elmx_value_too_small = 37,
    elmx_value_not_enumerated = 38,
    elmx_unexpected_attribute = 39,
    elmx_nil_body_not_empty = 40,
    elmx_entity_not_found = 41,
    elmx_undefined = 42,
    elmx_fixed_mismatch = 43,
    elmx_unknown_xsi_type = 44,
    elmx_type_not_set = 45,
    elmx_occurs_on_marshal = 46,
    elmx_user_defined_1 = 1000,
    elmx_user_defined_2 = 1001,
    elmx_user_defined_3 = 1002,
    elmx_user_defined_4 = 1003,
    elmx_user_defined_5 = 1004,
    elmx_user_defined_6 = 1005,
    elmx_user_defined_7 = 1006,
    elmx_user_defined_8 = 1007,
    elmx_user_defined_9 = 1008,
  }
}

namespace Zol
{
  /// <summary>Why a document was refused, or a value.</summary>
  public enum ErrorCode
  {
    /// <summary>No Error.</summary>
    None = 0,
    /// <summary>Unable to open file.</summary>
    NoFile = 1,
    /// <summary>Violation of xs:all cardinality constraints.</summary>
    AllCardinality = 2,
    /// <summary>Attribute has already been read.</summary>
    AttributeAlreadyRead = 3,
    /// <summary>Attributes found in anonymous compositor.</summary>
    AttributesInAnonymousCompositor = 4,
    /// <summary>XML badly formed.</summary>
    BadlyFormed = 5,
    /// <summary>XML character encoding not supported.</summary>
    BadCharEncoding = 6,
    /// <summary>Inappropriate choice option selected.</summary>
    BadChoice = 7,
    /// <summary>Badly formed comment.</summary>
    BadComment = 8,
    /// <summary>Badly formed DTD.</summary>
    BadDtd = 9,
    /// <summary>Bad end of element.</summary>
    BadEndOfElement = 10,
    /// <summary>Bad start tag end.</summary>
    BadStartTagEnd = 11,
    /// <summary>Syntax error in end tag.</summary>
    BadEndTag = 12,
    /// <summary>Bad XML Decl spec.</summary>
    BadXmlDecl = 13,
    /// <summary>Unsupported XML version.</summary>
    BadXmlVersion = 14,
    /// <summary>Mis-match between specified char encoding and read bytes.</summary>
    EncodingMismatch = 15,
    /// <summary>Element not found.</summary>
    ElementNotFound = 16,
    /// <summary>Reference to external entity.</summary>
    ExternalEntity = 17,
    /// <summary>Fraction digits exceeded.</summary>
    FractionDigits = 18,
    /// <summary>Length too long.</summary>
    LengthTooLong = 19,
    /// <summary>Length too short.</summary>
    LengthTooShort = 20,
    /// <summary>Mandatory element missing.</summary>
    MandatoryElementMissing = 21,
    /// <summary>No pattern matched.</summary>
    NoPatternMatch = 22,
    /// <summary>Not well formed.</summary>
    NotWellFormed = 23,
    /// <summary>Recursive entity definition.</summary>
    RecursiveEntity = 24,
    /// <summary>Required attribute(s) missing.</summary>
    RequiredAttributesMissing = 25,
    /// <summary>Element instances exceeds maxOccurs.</summary>
    TooManyElements = 26,
    /// <summary>Total digits exceeded.</summary>
    TotalDigits = 27,
    /// <summary>Unable to read attribute value.</summary>
    BadAttributeValue = 28,
    /// <summary>Unable to read element value.</summary>
    BadElementValue = 29,
    /// <summary>Unknown element in xs:all.</summary>
    UnknownElementInAll = 30,
    /// <summary>Unknown element in complexContent.</summary>
    UnknownElementInComplexContent = 31,
    /// <summary>Unexpected empty element.</summary>
    UnexpectedEmptyElement = 32,
    /// <summary>Unexpected entity.</summary>
    UnexpectedEntity = 33,
    /// <summary>Unexpected end of message.</summary>
    UnexpectedEnd = 34,
    /// <summary>Invalid value format for this type.</summary>
    BadValueFormat = 35,
    /// <summary>Value greater than specified maximum.</summary>
    ValueTooBig = 36,
    /// <summary>Value less than specified minimum.</summary>
    ValueTooSmall = 37,
    /// <summary>Value does not match enumerations.</summary>
    ValueNotEnumerated = 38,
    /// <summary>Unexpected attribute.</summary>
    UnexpectedAttribute = 39,
    /// <summary>Nilled element body not empty.</summary>
    NilBodyNotEmpty = 40,
    /// <summary>Entity not found.</summary>
    EntityNotFound = 41,
    /// <summary>Undefined error.</summary>
    Undefined = 42,
    /// <summary>Value does not match specified fixed constraint.</summary>
    FixedMismatch = 43,
    /// <summary>Unknown xsi:type.</summary>
    UnknownXsiType = 44,
    /// <summary>Type not set.</summary>
    TypeNotSet = 45,
    /// <summary>min/max occurs error on marshaling.</summary>
    OccursOnMarshal = 46,
    /// <summary>The archive cannot be used, the document is too large, or memory ran out.</summary>
    Unusable = 1000,
    /// <summary>The name of a file to write ends neither in .zol nor in .zolz.</summary>
    UnknownSuffix = 1001,
    /// <summary>User defined error 3.</summary>
    UserDefined3 = 1002,
    /// <summary>User defined error 4.</summary>
    UserDefined4 = 1003,
    /// <summary>User defined error 5.</summary>
    UserDefined5 = 1004,
    /// <summary>User defined error 6.</summary>
    UserDefined6 = 1005,
    /// <summary>User defined error 7.</summary>
    UserDefined7 = 1006,
    /// <summary>User defined error 8.</summary>
    UserDefined8 = 1007,
    /// <summary>User defined error 9.</summary>
    UserDefined9 = 1008,
  }
}
